#include "browsers/extension_policies.h"

#include <doctest/doctest.h>
#include <string>
#include <vector>

#include <windows.h>

#include "before_each_case.h"
#include "expected_browsers.h"
#include "intercepted_call.h"
#include "readable.h"
#include "test_registry.h"

namespace {

using Names = std::vector<std::wstring>;

constexpr wchar_t list_key[] = L"SOFTWARE\\Policies\\Google\\Chrome\\ExtensionInstallForcelist";
const std::wstring needle = L"kembcdlbgbcnnchcnbdhbmbhbejnedjf";

/// The browsers' own keys and policy keys, to judge the catalogue by.
struct BrowserKeys {
    std::wstring vendor;
    std::wstring policy;
};

const std::vector<BrowserKeys> browser_keys = [] {
    std::vector<BrowserKeys> keys;
    keys.reserve(expected_browsers.size());
    for (const ExpectedBrowser& browser : expected_browsers) {
        keys.push_back({L"SOFTWARE\\" + browser.settings, L"SOFTWARE\\Policies\\" + browser.settings});
    }
    return keys;
}();

const std::wstring other_id = L"abcdefghijklmnopabcdefghijklmnop";

void fill_browser(const BrowserKeys& keys) {
    for (const wchar_t* list : {L"\\ExtensionInstallForcelist", L"\\ExtensionInstallAllowlist"}) {
        set_text(keys.policy + list, L"1", needle + L";https://updates.example/crx");
        set_text(keys.policy + list, L"2", other_id);
        set_text(keys.policy + list, L"3", L"file:///C:/not a source");
        set_text(keys.policy + list, L"4", L"-" + needle + L"-");
    }
    const std::wstring sources = keys.policy + L"\\ExtensionInstallSources";
    set_text(sources, L"1", L"file:///C:/ours/*");
    set_text(sources, L"2", L"https://store.example/*");
    set_text(sources, L"3", L"see file://server/theirs");
    set_text(sources, L"4", L"FILE:///C:/other case");
    set_text(sources, L"5", needle);
    for (const std::wstring& parent :
         {keys.policy + L"\\ExtensionSettings\\", keys.vendor + L"\\Extensions\\"}) {
        set_text(parent + needle, L"installation_mode", L"force_installed");
        set_text(parent + needle + L"\\deeper", L"", L"x");
        set_text(parent + other_id, L"path", L"x");
    }
}

void check_browser_cleaned(const BrowserKeys& keys) {
    CAPTURE(keys.vendor);
    CHECK(value_names(keys.policy + L"\\ExtensionInstallForcelist") == Names{L"2", L"3"});
    CHECK(value_names(keys.policy + L"\\ExtensionInstallAllowlist") == Names{L"2", L"3"});
    CHECK(value_names(keys.policy + L"\\ExtensionInstallSources") == Names{L"2", L"4", L"5"});
    CHECK(subkeys_of(keys.policy + L"\\ExtensionSettings") == Names{other_id});
    CHECK(subkeys_of(keys.vendor + L"\\Extensions") == Names{other_id});
}

REGSAM g_asked_access = 0; // written by open_and_note, on the test's thread
const BeforeEachCase start_anew([] { g_asked_access = 0; });

LSTATUS WINAPI open_and_note(HKEY root, LPCWSTR path, DWORD options, REGSAM access, HKEY* key) {
    g_asked_access |= access;
    return real_function<decltype(RegOpenKeyExW)>("RegOpenKeyExW")(root, path, options, access, key);
}

LSTATUS WINAPI may_not_be_opened(HKEY /*root*/, LPCWSTR /*path*/, DWORD /*options*/, REGSAM /*access*/,
                                 HKEY* /*key*/) {
    return ERROR_ACCESS_DENIED;
}

} // namespace

TEST_CASE("one extension leaves all five places of its browser and of no other") {
    REQUIRE(known_browsers.size() == browser_keys.size());
    for (const BrowserKeys& keys : browser_keys) {
        fill_browser(keys);
    }
    for (size_t row = 0; row < known_browsers.size(); ++row) {
        clean_extension_policies(known_browsers[row], needle);
        check_browser_cleaned(browser_keys[row]);
        if (row + 1 < known_browsers.size()) {
            CHECK(value_names(browser_keys[row + 1].policy + L"\\ExtensionInstallForcelist").size() == 4);
            CHECK(subkeys_of(browser_keys[row + 1].vendor + L"\\Extensions").size() == 2);
        }
    }
}

TEST_CASE("no key is made and emptied keys stay and the 32-bit view keeps its entries") {
    {
        const BrowserKeys& brave = browser_keys[2];
        clean_extension_policies(known_browsers[2], needle);
        CHECK_FALSE(key_is_there(brave.policy));
        CHECK_FALSE(key_is_there(brave.vendor));

        const BrowserKeys& vivaldi = browser_keys[3];
        set_text(vivaldi.policy + L"\\ExtensionInstallForcelist", L"1", needle);
        set_text(vivaldi.policy + L"\\ExtensionSettings\\" + needle, L"x", L"x");
        set_text(vivaldi.vendor + L"\\Extensions\\" + needle, L"x", L"x");
        clean_extension_policies(known_browsers[3], needle);
        CHECK(key_is_there(vivaldi.policy + L"\\ExtensionInstallForcelist"));
        CHECK(value_names(vivaldi.policy + L"\\ExtensionInstallForcelist").empty());
        CHECK(key_is_there(vivaldi.policy + L"\\ExtensionSettings"));
        CHECK(subkeys_of(vivaldi.policy + L"\\ExtensionSettings").empty());
        CHECK(key_is_there(vivaldi.vendor + L"\\Extensions"));
    }
    {
        const std::wstring key = L"SOFTWARE\\Google\\Chrome\\Extensions\\" + needle;
        set_text(key, L"path", L"x", REG_SZ, View::bits_32);
        set_text(L"SOFTWARE\\List", L"1", needle, REG_SZ, View::bits_32);
        clean_extension_policies(known_browsers[1], needle);
        remove_values_containing(L"SOFTWARE\\List", needle);
        CHECK(key_is_there(key, View::bits_32));
        CHECK(values_of(L"SOFTWARE\\List", View::bits_32).size() == 1);
    }
}

TEST_CASE("only texts that hold the needle in its letter case go and the default value is one of them") {
    set_text(list_key, L"", L"default with " + needle);
    set_text(list_key, L"begins", needle + L";https://updates.example/crx");
    set_text(list_key, L"exact", needle);
    set_text(list_key, L"inside", L"x" + needle + L"x");
    set_text(list_key, L"kept binary", needle, REG_BINARY);
    set_text(list_key, L"kept expand", needle, REG_EXPAND_SZ);
    set_text(list_key, L"kept link", needle, REG_LINK);
    set_text(list_key, L"kept multi", needle, REG_MULTI_SZ);
    set_text(list_key, L"kept none", needle, REG_NONE);
    const DWORD number = 7;
    set_bytes(list_key, L"kept number", REG_DWORD, &number, sizeof number);
    set_text(list_key, L"kept shorter", needle.substr(1));
    set_text(list_key, L"kept upper case", L"KEMBCDLBGBCNNCHCNBDHBMBHBEJNEDJF");
    set_text(list_key, needle, L"kept: the needle is in the name");
    remove_values_containing(list_key, needle);
    CHECK(value_names(list_key) == Names{needle, L"kept binary", L"kept expand", L"kept link", L"kept multi",
                                         L"kept none", L"kept number", L"kept shorter", L"kept upper case"});
}

TEST_CASE("stored text counts as far as its first NUL or its size") {
    const size_t size = needle.size() * sizeof(wchar_t);
    set_bytes(list_key, L"gone unterminated", REG_SZ, needle.data(), size);
    set_bytes(list_key, L"gone odd size", REG_SZ, (needle + L"x").data(), size + 1);
    set_bytes(list_key, L"kept cut off", REG_SZ, needle.data(), size - 2);
    set_bytes(list_key, L"kept cut off oddly", REG_SZ, needle.data(), size - 1);
    const std::wstring behind = std::wstring(L"x") + L'\0' + needle;
    set_bytes(list_key, L"kept behind NUL", REG_SZ, behind.data(), behind.size() * sizeof(wchar_t));
    set_bytes(list_key, L"kept empty", REG_SZ, L"", 0);
    // A short value after a long one must not be read with the long one's rest.
    set_text(list_key, L"y long", std::wstring(3, L'-') + needle);
    set_bytes(list_key, L"z short", REG_SZ, L"---", 6);
    remove_values_containing(list_key, needle);
    CHECK(value_names(list_key) ==
          Names{L"kept behind NUL", L"kept cut off", L"kept cut off oddly", L"kept empty", L"z short"});
}

TEST_CASE("2048 bytes and 255 characters are still examined and more hides itself and all that follow") {
    {
        const std::wstring longest_text = std::wstring(1024 - needle.size(), L'-') + needle;
        set_bytes(list_key, L"1", REG_SZ, longest_text.data(), 2048);
        set_text(list_key, std::wstring(255, L'2'), needle);
        set_bytes(list_key, L"3", REG_BINARY, longest_text.data(), 2048);
        set_text(list_key, L"4", needle);
        remove_values_containing(list_key, needle);
        CHECK(value_names(list_key) == Names{L"3"});
    }
    {
        const std::wstring long_text = needle + std::wstring(1024, L'-');
        for (const DWORD type : {DWORD{REG_SZ}, DWORD{REG_BINARY}, DWORD{REG_MULTI_SZ}}) {
            const std::wstring key = L"SOFTWARE\\List of type " + std::to_wstring(type);
            set_text(key, L"1", needle);
            set_bytes(key, L"2", type, long_text.data(), 2049);
            set_text(key, L"3", needle);
            remove_values_containing(key, needle);
            CHECK(value_names(key) == Names{L"2", L"3"});
        }
        const std::wstring long_name(256, L'2');
        set_text(list_key, L"1", needle);
        set_text(list_key, long_name, needle);
        set_text(list_key, L"3", needle);
        remove_values_containing(list_key, needle);
        CHECK(value_names(list_key) == Names{long_name, L"3"});
    }
}

// Fixed behaviour: the rights are prescribed.
TEST_CASE("keys are opened with the rights that each step needs and a refusal is silent") {
    fill_browser(browser_keys[1]);
    {
        const InterceptedCall refusal("RegOpenKeyExW", may_not_be_opened);
        clean_extension_policies(known_browsers[1], needle);
    }
    CHECK(value_names(list_key).size() == 4);
    {
        const InterceptedCall open("RegOpenKeyExW", open_and_note);
        remove_values_containing(list_key, needle);
    }
    CHECK(g_asked_access == (KEY_QUERY_VALUE | KEY_SET_VALUE | KEY_WOW64_64KEY));
    CHECK(value_names(list_key) == Names{L"2", L"3"});
}
