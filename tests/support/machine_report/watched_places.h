// The places on a machine that the two products use.
#pragma once

#include <string>
#include <vector>

#include <windows.h>

struct WatchedKey {
    std::wstring label;
    std::wstring path; ///< below HKEY_LOCAL_MACHINE
};

/// A folder of the shell, such as CSIDL_PROGRAM_FILES. Empty when the shell does not know it.
std::wstring folder_of_shell(int csidl);

std::vector<std::wstring> watched_folders();
std::vector<WatchedKey> watched_uninstall_keys();
std::vector<WatchedKey> watched_host_keys();
std::vector<WatchedKey> watched_policy_keys();
/// Keys above those of the products: once made, they stay.
std::vector<WatchedKey> watched_parent_keys();
std::wstring watched_shortcut();
