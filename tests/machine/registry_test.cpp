#include "common/registry.h"

#include <doctest/doctest.h>
#include <string>
#include <vector>

#include "before_each_case.h"
#include "intercepted_call.h"
#include "readable.h"
#include "test_registry.h"

namespace {

using Values = std::vector<RegistryValue>;

constexpr wchar_t key[] = L"SOFTWARE\\Registry test\\made\\on the way";

LSTATUS WINAPI no_value_may_be_set(HKEY /*key*/, LPCWSTR /*name*/, DWORD /*reserved*/, DWORD /*type*/,
                                   const BYTE* /*data*/, DWORD /*size*/) {
    return ERROR_ACCESS_DENIED;
}

REGSAM g_asked_access = 0; // written by open_and_note, on the test's thread
const BeforeEachCase start_anew([] { g_asked_access = 0; });

LSTATUS WINAPI open_and_note(HKEY root, LPCWSTR path, DWORD options, REGSAM access, HKEY* opened) {
    g_asked_access = access;
    return real_function<decltype(RegOpenKeyExW)>("RegOpenKeyExW")(root, path, options, access, opened);
}

} // namespace

TEST_CASE("a text value is set with its type and terminator and its key made with all parents") {
    CHECK(set_hklm_string(key, L"Name", L"caf\u00E9 \u65E5"));
    CHECK(set_hklm_string(key, L"", L"the default"));
    CHECK(set_hklm_string(key, L"Empty", L""));
    CHECK(set_hklm_dword(key, L"Number", 0xFFFFFFFE));
    CHECK(values_of(key) == Values{{L"", REG_SZ, L"the default"},
                                   {L"Empty", REG_SZ, L""},
                                   {L"Name", REG_SZ, L"caf\u00E9 \u65E5"},
                                   {L"Number", REG_DWORD, L"4294967294"}});
    CHECK(size_of_value(key, L"Name") == 14);
    CHECK(size_of_value(key, L"") == 24);
    CHECK(size_of_value(key, L"Empty") == 2);

    CHECK(set_hklm_string(key, L"Name", L"x"));
    CHECK(set_hklm_dword(key, L"Empty", 0));
    CHECK(values_of(key) == Values{{L"", REG_SZ, L"the default"},
                                   {L"Empty", REG_DWORD, L"0"},
                                   {L"Name", REG_SZ, L"x"},
                                   {L"Number", REG_DWORD, L"4294967294"}});
}

TEST_CASE("values go to the 64-bit view alone and are read from there") {
    CHECK(set_hklm_string(key, L"Name", L"64"));
    CHECK_FALSE(key_is_there(L"SOFTWARE\\Registry test", View::bits_32));
    set_text(L"SOFTWARE\\Only 32", L"Name", L"32", REG_SZ, View::bits_32);
    CHECK_FALSE(open_hklm_key(L"SOFTWARE\\Only 32", KEY_READ));
    CHECK_FALSE(delete_hklm_tree(L"SOFTWARE\\Only 32"));
    CHECK(values_of(L"SOFTWARE\\Only 32", View::bits_32) == Values{{L"Name", REG_SZ, L"32"}});
    CHECK(static_cast<bool>(open_hklm_key(key, KEY_READ)));
    CHECK_FALSE(open_hklm_key(L"SOFTWARE\\Registry test\\none", KEY_READ));
}

TEST_CASE("a key that cannot be made and a value that cannot be set are told") {
    const std::wstring too_long = L"SOFTWARE\\" + std::wstring(300, L'k');
    CHECK_FALSE(set_hklm_string(too_long, L"Name", L"x"));
    CHECK_FALSE(set_hklm_dword(too_long, L"Name", 1));
    const InterceptedCall refusal("RegSetValueExW", no_value_may_be_set);
    CHECK_FALSE(set_hklm_string(key, L"Name", L"x"));
    CHECK_FALSE(set_hklm_dword(key, L"Name", 1));
    CHECK(values_of(key).empty());
}

// Fixed behaviour: the rights are prescribed.
TEST_CASE("a deleted tree goes with values and subkeys and leaves its neighbours and parents") {
    set_text(L"SOFTWARE\\Parent\\tree", L"", L"x");
    set_text(L"SOFTWARE\\Parent\\tree", L"Name", L"x");
    set_text(L"SOFTWARE\\Parent\\tree\\deep\\er", L"Name", L"x");
    make_key(L"SOFTWARE\\Parent\\tree\\empty");
    set_text(L"SOFTWARE\\Parent\\tree2", L"Name", L"stays");
    {
        const InterceptedCall open("RegOpenKeyExW", open_and_note);
        CHECK(delete_hklm_tree(L"SOFTWARE\\Parent\\tree"));
        CHECK(g_asked_access == 0x2011F);
    }
    CHECK_FALSE(key_is_there(L"SOFTWARE\\Parent\\tree"));
    CHECK(subkeys_of(L"SOFTWARE\\Parent") == std::vector<std::wstring>{L"tree2"});
    CHECK(values_of(L"SOFTWARE\\Parent\\tree2") == Values{{L"Name", REG_SZ, L"stays"}});
    CHECK_FALSE(delete_hklm_tree(L"SOFTWARE\\Parent\\tree"));
    CHECK(delete_hklm_tree(L"SOFTWARE\\Parent\\tree2"));
    CHECK(key_is_there(L"SOFTWARE\\Parent"));
}
