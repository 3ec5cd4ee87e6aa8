#include "watched_places.h"

#include <shlobj.h>

#include "expected_browsers.h"

namespace {

constexpr const wchar_t* policy_lists[] = {L"ExtensionInstallForcelist", L"ExtensionInstallAllowlist",
                                           L"ExtensionInstallSources", L"ExtensionSettings"};

std::vector<WatchedKey> host_parents() {
    std::vector<WatchedKey> keys;
    keys.reserve(expected_browsers.size());
    for (const ExpectedBrowser& browser : expected_browsers) {
        keys.push_back({browser.name, L"SOFTWARE\\" + browser.settings + L"\\NativeMessagingHosts"});
    }
    keys.push_back({L"Firefox", L"SOFTWARE\\Mozilla\\NativeMessagingHosts"});
    return keys;
}

} // namespace

std::wstring folder_of_shell(int csidl) {
    wchar_t path[MAX_PATH] = {};
    if (FAILED(SHGetFolderPathW(nullptr, csidl, nullptr, SHGFP_TYPE_CURRENT, path))) {
        return {};
    }
    return path;
}

std::vector<std::wstring> watched_folders() {
    const std::wstring programs = folder_of_shell(CSIDL_PROGRAM_FILES);
    return {programs + L"\\Brackenfold", L"C:\\ProgramData\\Brackenfold",
            programs + L"\\Mozilla Firefox\\distribution"};
}

std::vector<WatchedKey> watched_uninstall_keys() {
    const std::wstring parent = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";
    return {{L"Fortwright Console", parent + L"FortwrightConsole"},
            {L"Veyra Linkward", parent + L"VeyraLinkward"}};
}

std::vector<WatchedKey> watched_host_keys() {
    std::vector<WatchedKey> keys = host_parents();
    for (WatchedKey& key : keys) {
        key.path += L"\\com.veyra.linkward";
    }
    return keys;
}

std::vector<WatchedKey> watched_policy_keys() {
    std::vector<WatchedKey> keys;
    for (const ExpectedBrowser& browser : expected_browsers) {
        for (const wchar_t* list : policy_lists) {
            keys.push_back({browser.name, L"SOFTWARE\\Policies\\" + browser.settings + L"\\" + list});
        }
        keys.push_back({browser.name, L"SOFTWARE\\" + browser.settings + L"\\Extensions"});
    }
    keys.push_back({L"Firefox", L"SOFTWARE\\Policies\\Mozilla\\Firefox\\Extensions"});
    return keys;
}

std::vector<WatchedKey> watched_parent_keys() {
    std::vector<WatchedKey> keys = host_parents();
    for (const WatchedKey& key : watched_policy_keys()) {
        keys.push_back(key);
    }
    return keys;
}

std::wstring watched_shortcut() {
    return folder_of_shell(CSIDL_DESKTOP) + L"\\Fortwright Console.lnk";
}
