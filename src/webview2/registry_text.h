#pragma once

#include <string>
#include <windows.h>

/// Reads one registry value as text, whatever type it was stored with and without expanding anything,
/// as Microsoft's loader does. `view` is 0 or one of the KEY_WOW64_ flags. Ends at the first null.
/// Empty when the key or the value is absent or cannot be read.
std::wstring read_registry_text(HKEY root, const wchar_t* path, REGSAM view, const wchar_t* name);
