#pragma once

#include <string>

#include "common/owned.h"

/// A path in full, from the drive on, and without a final separator unless it is a root.
std::wstring full_path(const std::wstring& path);

/// Where a path leads, in full and all links followed, in the form that begins with "\\\\?\\". What is
/// missing of it is taken as it is spelled. Empty when the system cannot tell.
std::wstring real_path(const std::wstring& path);

/// Opens what a path leads to, a folder too, for its attributes; links are followed. Empty, with the reason
/// in the last error, when that cannot be done.
OwnedFile open_entry(const std::wstring& path);
