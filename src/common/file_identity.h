#pragma once

#include <string>

/// Which file is which, however it is named: by the number that its volume gives it, in 128 bits where the
/// file system has them (64 are not unique everywhere).

/// Whether both paths lead to the same file or folder. Throws FileError with operation "equivalent" when
/// either is missing or cannot be opened.
bool is_same_entry(const std::wstring& a, const std::wstring& b);

/// The same for paths of which either may be missing or closed to us, which is then no.
bool is_same_existing_entry(const std::wstring& a, const std::wstring& b);

/// Whether what a path leads to, or would lead to once it exists, is `folder` or lies anywhere below it, all
/// links followed. No when the system cannot tell.
bool lies_inside(const std::wstring& path, const std::wstring& folder);
