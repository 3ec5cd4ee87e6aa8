#pragma once

#include <string>
#include <string_view>

/// Copies a folder with all below it to a place where nothing is. Returns whether everything was copied.
bool copy_tree(const std::wstring& from, const std::wstring& to);

/// Takes a folder with all below it away, as far as it can be. Links are not followed.
void delete_tree(const std::wstring& folder);

/// Replaces what the file holds, or makes it. Returns whether it did.
bool write_file(const std::wstring& path, std::string_view bytes);
