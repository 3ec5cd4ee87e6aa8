#include "browsers/extension_policies.h"

#include <array>
#include <vector>

#include <windows.h>

#include "common/registry.h"

namespace {

constexpr DWORD max_name_characters = 256;
constexpr DWORD max_data_bytes = 2048;

/// Stored text as far as its first NUL, or its size: nothing promises that it ends in one.
std::wstring stored_text(const wchar_t* data, DWORD size_bytes) {
    const std::wstring text(data, size_bytes / sizeof(wchar_t));
    return text.substr(0, text.find(L'\0'));
}

std::vector<std::wstring> names_of_values_containing(HKEY key, const std::wstring& needle) {
    std::vector<std::wstring> names;
    std::array<wchar_t, max_name_characters> name = {};
    std::array<wchar_t, max_data_bytes / sizeof(wchar_t)> data = {};
    for (DWORD index = 0;; ++index) {
        DWORD name_length = max_name_characters;
        DWORD size_bytes = max_data_bytes;
        DWORD type = REG_NONE;
        if (RegEnumValueW(key, index, name.data(), &name_length, nullptr, &type,
                          reinterpret_cast<BYTE*>(data.data()), &size_bytes) != ERROR_SUCCESS) {
            return names;
        }
        if (type == REG_SZ && stored_text(data.data(), size_bytes).find(needle) != std::wstring::npos) {
            names.emplace_back(name.data(), name_length);
        }
    }
}

} // namespace

void clean_extension_policies(const BrowserInfo& browser, const std::wstring& extension_id) {
    const std::wstring policy_key = browser.policy_key;
    remove_values_containing(policy_key + L"\\ExtensionInstallForcelist", extension_id);
    remove_values_containing(policy_key + L"\\ExtensionInstallAllowlist", extension_id);
    remove_values_containing(policy_key + L"\\ExtensionInstallSources", L"file://");
    delete_hklm_tree(policy_key + L"\\ExtensionSettings\\" + extension_id);
    delete_hklm_tree(std::wstring(browser.vendor_key) + L"\\Extensions\\" + extension_id);
}

void remove_values_containing(const std::wstring& key_path, const std::wstring& needle) {
    const OwnedKey key = open_hklm_key(key_path, KEY_QUERY_VALUE | KEY_SET_VALUE);
    if (!key) {
        return;
    }
    // Deleted only after the walk, which counts on stable indexes. Failures are ignored: there is no other
    // way.
    for (const std::wstring& name : names_of_values_containing(key.get(), needle)) {
        RegDeleteValueW(key.get(), name.c_str());
    }
}
