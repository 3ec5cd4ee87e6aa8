#pragma once

#include <string>

#include "common/owned.h"

/// All registry work happens below HKEY_LOCAL_MACHINE in the 64-bit view, whatever the program's own bits.

/// Sets a REG_SZ value, creating the key with its parents when it is missing. An empty name means the key's
/// default value. Returns false when the key could not be created or the value could not be set.
bool set_hklm_string(const std::wstring& key_path, const std::wstring& name, const std::wstring& text);

/// The same for a REG_DWORD value.
bool set_hklm_dword(const std::wstring& key_path, const std::wstring& name, DWORD number);

/// Opens an existing key; the owner is empty when it is absent or may not be opened.
OwnedKey open_hklm_key(const std::wstring& key_path, REGSAM access);

/// Removes a key with all its subkeys and values. Returns whether the key could be opened; what happens after
/// that is not looked at.
bool delete_hklm_tree(const std::wstring& key_path);
