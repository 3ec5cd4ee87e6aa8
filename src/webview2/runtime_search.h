#pragma once

#include <string>
#include <string_view>

/// The DLL of the stable runtime that is registered on this machine: the machine-wide one, else the
/// user's. An entry that is too old, malformed or without a readable DLL is passed over. Empty when there
/// is none. The user's counts although we run elevated: a runtime that was set up without administrator
/// rights is registered nowhere else.
std::wstring find_installed_runtime_dll();

/// The DLL of a runtime that an administrator or the caller placed in a folder of its own, which is
/// relative to the program's folder unless it is a full path. No version is required. Empty when there
/// is none.
std::wstring find_fixed_runtime_dll(std::wstring_view folder);
