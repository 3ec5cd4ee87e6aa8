#pragma once

#include <string>

/// Paths as texts. Backslash and slash both separate; nothing here asks the file system.

/// A path below a folder. A right side that names a drive or a server stands for itself; one that begins with
/// a separator begins at the root of the folder's drive. No separator is put behind a bare drive letter: "C:"
/// and "x" give "C:x", x in the drive's current folder.
std::wstring join_path(const std::wstring& folder, const std::wstring& name);

/// The part behind the last separator, or behind a drive letter; empty for a root and behind a final
/// separator.
std::wstring file_name_of(const std::wstring& path);

/// The path without its last part and the separators before it; a final separator alone is a last part. A
/// root is its own parent, and a bare name has an empty one.
std::wstring parent_of(const std::wstring& path);

/// The end of the file name from its last dot, which is part of it. Empty without a dot, when the only dot is
/// the first character, and for the names "." and "..".
std::wstring extension_of(const std::wstring& path);
