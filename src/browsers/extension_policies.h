#pragma once

#include <string>

#include "browsers/catalogue.h"

/// Takes a browser extension out of one browser's machine-wide policies and external-extension entries, so
/// that the browser stops installing it. Absent keys and refused deletions are passed over in silence.
void clean_extension_policies(const BrowserInfo& browser, const std::wstring& extension_id);

/// Deletes every REG_SZ value of a key below HKEY_LOCAL_MACHINE whose data holds the needle (case-sensitive).
/// The walk ends at the first value that cannot be read: a name of more than 255 characters or data of more
/// than 2048 bytes hides itself and all that follow. An absent key is fine.
void remove_values_containing(const std::wstring& key_path, const std::wstring& needle);
