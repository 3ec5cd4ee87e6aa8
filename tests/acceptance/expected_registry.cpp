#include "expected_registry.h"

#include <algorithm>

#include <windows.h>

#include "expected_browsers.h"
#include "places.h"
#include "product_facts.h"
#include "read_registry.h"

namespace {

RegistryValue text_value(const std::wstring& name, const std::wstring& text) {
    return {name, REG_SZ, text};
}

RegistryValue number_value(const std::wstring& name, const std::wstring& decimal) {
    return {name, REG_DWORD, decimal};
}

RegistryKey entry_key(const wchar_t* name) {
    return {L"", std::wstring(uninstall_root) + name, false, {}};
}

// The date that the machine has, when it may have it.
std::wstring date_to_expect(const RegistryKey& entry, const std::vector<std::wstring>& possible_dates) {
    for (const RegistryKey& key : read_keys(L"", entry.path, false)) {
        for (const RegistryValue& value : key.values) {
            if (value.name == L"InstallDate" &&
                std::find(possible_dates.begin(), possible_dates.end(), value.text) != possible_dates.end()) {
                return value.text;
            }
        }
    }
    return possible_dates.empty() ? L"" : possible_dates.front();
}

void add_host(Facts& facts, const std::wstring& settings, const wchar_t* manifest) {
    RegistryKey key = {L"", L"SOFTWARE\\" + settings + host_key, false, {}};
    key.values.push_back(text_value(L"", linkward_folder() + L"\\" + manifest));
    add_key_facts(facts, L"native messaging", key);
}

// In the machine's code page, with backslashes and quotes escaped.
std::string escaped_host_path() {
    const std::wstring path = linkward_folder() + L"\\" + host_program;
    std::string narrow(path.size() * 4, '\0');
    narrow.resize(static_cast<size_t>(
        WideCharToMultiByte(CP_ACP, 0, path.c_str(), static_cast<int>(path.size()), narrow.data(),
                            static_cast<int>(narrow.size()), nullptr, nullptr)));
    std::string escaped;
    for (const char byte : narrow) {
        escaped += byte == '\\' || byte == '"' ? std::string("\\") + byte : std::string(1, byte);
    }
    return escaped;
}

std::string quoted(const std::string& text) {
    return "\"" + text + "\"";
}

std::string manifest_with(const std::string& allowed) {
    return "{\r\n  \"name\": " + quoted(host_name) + ",\r\n  \"description\": " + quoted(host_description) +
           ",\r\n  \"path\": " + quoted(escaped_host_path()) + ",\r\n  \"type\": \"stdio\",\r\n  " + allowed +
           "\r\n}\r\n";
}

} // namespace

void add_console_entry(Facts& facts, const std::vector<std::wstring>& possible_dates) {
    RegistryKey entry = entry_key(console_entry_name);
    const std::wstring folder = console_folder();
    entry.values = {
        text_value(L"DisplayName", console_name),
        text_value(L"DisplayVersion", product_version),
        text_value(L"Publisher", console_publisher),
        text_value(L"InstallLocation", folder),
        text_value(L"UninstallString", L"\"" + folder + L"\\" + console_copy_name + L"\" /uninstall"),
        text_value(L"DisplayIcon", folder + L"\\" + console_program + L",0"),
        text_value(L"URLInfoAbout", publisher_address),
        number_value(L"EstimatedSize", console_size_kb),
        number_value(L"NoModify", L"1"),
        number_value(L"NoRepair", L"1"),
        text_value(L"InstallDate", date_to_expect(entry, possible_dates)),
    };
    add_key_facts(facts, L"uninstall entries", entry);
}

void add_linkward_entry(Facts& facts) {
    RegistryKey entry = entry_key(linkward_entry_name);
    entry.values = {
        text_value(L"DisplayName", linkward_name),
        text_value(L"UninstallString", linkward_copy() + L" --uninstall-gui"),
        text_value(L"QuietUninstallString", linkward_copy() + L" --uninstall"),
        text_value(L"InstallLocation", linkward_folder()),
        text_value(L"Publisher", linkward_publisher),
        text_value(L"DisplayVersion", product_version),
        text_value(L"ExtensionId", store_extension),
    };
    add_key_facts(facts, L"uninstall entries", entry);
}

void add_native_messaging(Facts& facts) {
    for (const ExpectedBrowser& browser : expected_browsers) {
        add_host(facts, browser.settings, chromium_manifest_name);
    }
    add_host(facts, firefox_settings, firefox_manifest_name);
}

std::string expected_chromium_manifest() {
    return manifest_with("\"allowed_origins\": [\r\n    " + quoted(store_origin) + ",\r\n    " +
                         quoted(direct_origin) + "\r\n  ]");
}

std::string expected_firefox_manifest() {
    return manifest_with("\"allowed_extensions\": [" + quoted(firefox_extension) + "]");
}
