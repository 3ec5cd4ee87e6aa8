#pragma once

#include <optional>
#include <string>

#include <windows.h>

/// Reads one registry value as text, whatever type it was stored with and without expanding anything,
/// as Microsoft's loader does. `view` is 0 or one of the KEY_WOW64_ flags. Ends at the first null.
/// Empty when the key or the value is absent or cannot be read.
std::wstring read_registry_text(HKEY root, const wchar_t* path, REGSAM view, const wchar_t* name);

/// Reads one registry value that has a text type, with the variables in it expanded when its type says so.
/// Ends at the first null. Empty when the stored text is; nothing when the key or the value is absent, cannot
/// be read or is of another type.
std::optional<std::wstring> read_expanded_registry_text(HKEY root, const wchar_t* path, const wchar_t* name);
