#include "browsers/detection.h"

#include <algorithm>
#include <array>
#include <optional>

#include <windows.h>
#include <shlobj.h>

#include "common/file_identity.h"
#include "common/files.h"
#include "common/paths.h"
#include "common/registry.h"
#include "common/system_places.h"

namespace {

using SearchBases = std::array<std::wstring, 4>;

SearchBases search_bases() {
    const std::wstring local_app_data = shell_folder(CSIDL_LOCAL_APPDATA);
    return {program_files_dir(), shell_folder(CSIDL_PROGRAM_FILESX86), join_path(local_app_data, L"Programs"),
            local_app_data};
}

bool is_already_detected(const std::vector<DetectedBrowser>& detected, const std::wstring& exe_path) {
    return std::ranges::any_of(
        detected, [&](const DetectedBrowser& earlier) { return is_same_entry(earlier.exe_path, exe_path); });
}

/// The first of the browser's usual places that holds a program no earlier browser was found with.
std::optional<std::wstring> find_in_bases(const BrowserInfo& browser, const SearchBases& bases,
                                          const std::vector<DetectedBrowser>& detected) {
    for (const std::wstring& base : bases) {
        for (const wchar_t* const relative_path : browser.relative_exe_paths) {
            if (relative_path == nullptr) {
                break;
            }
            std::wstring candidate = join_path(base, relative_path);
            if (entry_exists(candidate) && !is_already_detected(detected, candidate)) {
                return candidate;
            }
        }
    }
    return std::nullopt;
}

/// The program that App Paths names for the browser, as it stands there: neither unquoted nor expanded.
std::optional<std::wstring> find_in_app_paths(const BrowserInfo& browser) {
    const std::wstring key_path =
        std::wstring(L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\") + browser.exe_name;
    const OwnedKey key = open_hklm_key(key_path, KEY_READ);
    if (!key) {
        return std::nullopt;
    }
    // One character more than is asked for: the stored text need not end in a NUL.
    std::array<wchar_t, MAX_PATH + 1> text = {};
    DWORD size_bytes = MAX_PATH * sizeof(wchar_t);
    if (RegQueryValueExW(key.get(), nullptr, nullptr, nullptr, reinterpret_cast<BYTE*>(text.data()),
                         &size_bytes) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    std::wstring exe_path = text.data();
    if (!entry_exists(exe_path)) {
        return std::nullopt;
    }
    return exe_path;
}

} // namespace

std::vector<DetectedBrowser> detect_browsers() {
    const SearchBases bases = search_bases();
    std::vector<DetectedBrowser> detected;
    detected.reserve(known_browsers.size());
    for (const BrowserInfo& browser : known_browsers) {
        std::optional<std::wstring> exe_path = find_in_bases(browser, bases, detected);
        if (!exe_path) {
            // What App Paths names is not compared with earlier browsers: Opera GX may come out as Opera.
            exe_path = find_in_app_paths(browser);
        }
        if (exe_path) {
            detected.push_back({&browser, *exe_path});
        }
    }
    return detected;
}
