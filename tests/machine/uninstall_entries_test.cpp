#include <doctest/doctest.h>
#include <string>
#include <vector>

#include <windows.h>

#include "before_each_case.h"
#include "console/uninstall_entry.h"
#include "intercepted_call.h"
#include "linkward/uninstall_entry.h"
#include "recorded_reports.h"
#include "test_files.h"
#include "test_registry.h"

namespace {

using Values = std::vector<RegistryValue>;

const std::wstring parent_key = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall";
const std::wstring linkward_key = parent_key + L"\\VeyraLinkward";
const std::wstring console_key = parent_key + L"\\FortwrightConsole";
const Reports registered = {{"Registered in Add/Remove Programs", true}};

Values linkward_values() {
    return {{L"DisplayName", REG_SZ, L"Veyra Linkward"},
            {L"DisplayVersion", REG_SZ, project_version()},
            {L"ExtensionId", REG_SZ, L"dgldcbgpnkooljhfhcjpkojcdnfkepnb"},
            {L"InstallLocation", REG_SZ, L"C:\\Program Files\\Brackenfold\\Veyra Linkward"},
            {L"Publisher", REG_SZ, L"Brackenfold"},
            {L"QuietUninstallString", REG_SZ,
             L"C:\\Program Files\\Brackenfold\\Veyra Linkward\\VeyraLinkwardInstaller.exe --uninstall"},
            {L"UninstallString", REG_SZ,
             L"C:\\Program Files\\Brackenfold\\Veyra Linkward\\VeyraLinkwardInstaller.exe --uninstall-gui"}};
}

Values console_values(const std::wstring& date) {
    return {{L"DisplayIcon", REG_SZ, L"C:\\Program Files\\Brackenfold\\FWC\\Fortwright.exe,0"},
            {L"DisplayName", REG_SZ, L"Fortwright Console"},
            {L"DisplayVersion", REG_SZ, project_version()},
            {L"EstimatedSize", REG_DWORD, L"50000"},
            {L"InstallDate", REG_SZ, date},
            {L"InstallLocation", REG_SZ, L"C:\\Program Files\\Brackenfold\\FWC"},
            {L"NoModify", REG_DWORD, L"1"},
            {L"NoRepair", REG_DWORD, L"1"},
            {L"Publisher", REG_SZ, L"Brackenfold LTD"},
            {L"UninstallString", REG_SZ, L"\"C:\\Program Files\\Brackenfold\\FWC\\updater.exe\" /uninstall"},
            {L"URLInfoAbout", REG_SZ, L"https://www.brackenfold.example/"}};
}

// Written by the stand-ins below, on the test's thread.
std::vector<std::wstring> g_written_values;
int g_opened_keys = 0;
const BeforeEachCase start_anew([] {
    g_written_values.clear();
    g_opened_keys = 0;
});

LSTATUS WINAPI noted_value(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size) {
    g_written_values.emplace_back(name);
    return real_function<decltype(RegSetValueExW)>("RegSetValueExW")(key, name, reserved, type, data, size);
}

LSTATUS WINAPI noted_key(HKEY root, LPCWSTR path, DWORD reserved, LPWSTR type, DWORD options, REGSAM access,
                         LPSECURITY_ATTRIBUTES security, PHKEY key, LPDWORD disposition) {
    ++g_opened_keys;
    return real_function<decltype(RegCreateKeyExW)>("RegCreateKeyExW")(root, path, reserved, type, options,
                                                                       access, security, key, disposition);
}

LSTATUS WINAPI refused_key(HKEY /*root*/, LPCWSTR /*path*/, DWORD /*reserved*/, LPWSTR /*type*/,
                           DWORD /*options*/, REGSAM /*access*/, LPSECURITY_ATTRIBUTES /*security*/,
                           PHKEY /*key*/, LPDWORD /*disposition*/) {
    return ERROR_ACCESS_DENIED;
}

void WINAPI fifth_of_march(LPSYSTEMTIME time) {
    *time = {};
    time->wYear = 2025;
    time->wMonth = 3;
    time->wDay = 5;
}

void WINAPI new_years_eve(LPSYSTEMTIME time) {
    *time = {};
    time->wYear = 2026;
    time->wMonth = 12;
    time->wDay = 31;
}

} // namespace

TEST_CASE("the web protection is listed with its seven values and nothing else") {
    RecordedReports reports;
    CHECK(register_linkward_arp(reports.progress));
    CHECK(reports.all == registered);
    CHECK(values_of(linkward_key) == linkward_values());
    CHECK(subkeys_of(linkward_key).empty());
    CHECK_FALSE(key_is_there(linkward_key, View::bits_32));
    CHECK_FALSE(is_there(L"C:\\Program Files\\Brackenfold"));
    for (const RegistryValue& value : linkward_values()) {
        CHECK(size_of_value(linkward_key, value.name) == (value.text.size() + 1) * 2);
    }

    set_text(linkward_key, L"DisplayName", L"Old name", REG_EXPAND_SZ);
    set_text(linkward_key, L"Stale", L"kept");
    register_linkward_arp(reports.progress);
    Values with_stale = linkward_values();
    with_stale.insert(with_stale.begin() + 6, {L"Stale", REG_SZ, L"kept"});
    CHECK(values_of(linkward_key) == with_stale);
}

TEST_CASE("the console is listed with its eleven values and nothing else") {
    RecordedReports reports;
    {
        const InterceptedCall today("GetLocalTime", fifth_of_march);
        register_fwc_arp(reports.progress);
    }
    CHECK(reports.all == registered);
    CHECK(values_of(console_key) == console_values(L"20250305"));
    CHECK(subkeys_of(console_key).empty());
    CHECK_FALSE(key_is_there(console_key, View::bits_32));
    for (const RegistryValue& value : console_values(L"20250305")) {
        CHECK(size_of_value(console_key, value.name) ==
              (value.type == REG_DWORD ? 4 : (value.text.size() + 1) * 2));
    }

    set_text(console_key, L"EstimatedSize", L"an old text");
    set_text(console_key, L"DisplayVersion", L"0.9");
    const InterceptedCall later("GetLocalTime", new_years_eve);
    register_fwc_arp(reports.progress);
    CHECK(values_of(console_key) == console_values(L"20261231"));
}

// Fixed behaviour: the order of the values, and a key opened for each, are prescribed.
TEST_CASE("a refused key is no failure and the values are written in their order") {
    {
        RecordedReports reports;
        {
            const InterceptedCall refusal("RegCreateKeyExW", refused_key);
            CHECK(register_linkward_arp(reports.progress));
            register_fwc_arp(reports.progress);
        }
        CHECK(reports.all == Reports{registered[0], registered[0]});
        CHECK_FALSE(key_is_there(linkward_key));
        CHECK_FALSE(key_is_there(console_key));
    }
    {
        RecordedReports reports;
        const InterceptedCall value("RegSetValueExW", noted_value);
        const InterceptedCall key("RegCreateKeyExW", noted_key);
        register_linkward_arp(reports.progress);
        CHECK(g_written_values == std::vector<std::wstring>{L"DisplayName", L"UninstallString",
                                                            L"QuietUninstallString", L"InstallLocation",
                                                            L"Publisher", L"DisplayVersion", L"ExtensionId"});
        CHECK(g_opened_keys == 7);
        g_written_values.clear();
        register_fwc_arp(reports.progress);
        CHECK(g_written_values == std::vector<std::wstring>{L"DisplayName", L"DisplayVersion", L"Publisher",
                                                            L"InstallLocation", L"UninstallString",
                                                            L"DisplayIcon", L"URLInfoAbout", L"EstimatedSize",
                                                            L"NoModify", L"NoRepair", L"InstallDate"});
        CHECK(g_opened_keys == 18);
    }
}

TEST_CASE("the console's entry goes whole and is reported gone in any case") {
    RecordedReports reports;
    register_linkward_arp(reports.progress);
    register_fwc_arp(reports.progress);
    set_text(console_key + L"\\deeper", L"x", L"x");
    reports.all.clear();
    remove_fwc_arp(reports.progress);
    remove_fwc_arp(reports.progress);
    CHECK(reports.all == Reports{{"Removed registry entries", true}, {"Removed registry entries", true}});
    CHECK_FALSE(key_is_there(console_key));
    CHECK(values_of(linkward_key) == linkward_values());
    CHECK(key_is_there(parent_key));
}
