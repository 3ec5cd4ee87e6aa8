// Which of the installed runtimes the loader finds in the registry.
#include <doctest/doctest.h>
#include <filesystem>
#include <string>

#include "webview2_machine.h"

TEST_CASE("an entry in the 64-bit view alone is not seen") {
    const Machine machine;
    set_value(HKEY_LOCAL_MACHINE, client_state, L"EBWebView", Machine::place_runtime(L"120.0.2210.91"));
    CHECK(Creation().started == no_runtime);
}

TEST_CASE("the user's runtime is taken when the machine has none") {
    const Machine machine;
    const auto folder = Machine::place_runtime(L"120.0.2210.91");
    Machine::register_for_user(folder);
    CHECK(Creation().has_environment());
    CHECK(Machine::is_loaded(folder));
}

TEST_CASE("the machine's runtime comes before a newer one of the user") {
    const Machine machine;
    const auto older = Machine::place_runtime(L"100.0.0.0");
    const auto newer = Machine::place_runtime(L"120.0.2210.91");
    Machine::register_for_machine(older);
    Machine::register_for_user(newer);
    CHECK(Creation().has_environment());
    CHECK(Machine::is_loaded(older));
    CHECK_FALSE(Machine::is_loaded(newer));
}

TEST_CASE("a broken machine entry falls through to the user's runtime") {
    const Machine machine;
    const auto good = Machine::place_runtime(L"120.0.2210.91");
    Machine::register_for_user(good);
    std::wstring broken;
    SUBCASE("no DLL below the folder") {
        broken = Machine::folder() + L"\\121.0.0.0";
        std::filesystem::create_directories(broken);
    }
    SUBCASE("a folder where the DLL should be") {
        broken = Machine::folder() + L"\\121.0.0.0";
        std::filesystem::create_directories(Machine::dll_of(broken));
    }
    SUBCASE("too old") {
        broken = Machine::place_runtime(L"86.0.615.9");
    }
    SUBCASE("a backslash at the end") {
        broken = Machine::place_runtime(L"121.0.0.0") + L"\\";
    }
    SUBCASE("no version at the end") {
        broken = Machine::place_runtime(L"Application");
    }
    SUBCASE("no folder at all") {
        broken = L"121.0.0.0";
    }
    SUBCASE("an empty value") {
    }
    Machine::register_for_machine(broken);
    CHECK(Creation().has_environment());
    CHECK(Machine::is_loaded(good));
    CHECK_FALSE(Machine::is_loaded(broken));
}

TEST_CASE("the oldest runtime that counts is 86.0.616.0") {
    const Machine machine;
    const auto folder = Machine::place_runtime(L"86.0.616.0");
    Machine::register_for_machine(folder);
    CHECK(Creation().has_environment());
    CHECK(Machine::is_loaded(folder));
}

TEST_CASE("a folder that is too old or ends in a backslash is no runtime") {
    const Machine machine;
    SUBCASE("86.0.615.9") {
        Machine::register_for_machine(Machine::place_runtime(L"86.0.615.9"));
    }
    SUBCASE("backslash") {
        Machine::register_for_machine(Machine::place_runtime(L"120.0.2210.91") + L"\\");
    }
    CHECK(Creation().started == no_runtime);
}

TEST_CASE("variables in the stored text are not expanded") {
    const Machine machine;
    Machine::place_runtime(L"120.0.2210.91");
    SetEnvironmentVariableW(L"WEBVIEW2_TEST_FOLDER", Machine::folder().c_str());
    set_value(HKEY_LOCAL_MACHINE, client_state_32, L"EBWebView", L"%WEBVIEW2_TEST_FOLDER%\\120.0.2210.91",
              REG_EXPAND_SZ);
    CHECK(Creation().started == no_runtime);
    SetEnvironmentVariableW(L"WEBVIEW2_TEST_FOLDER", nullptr);
}

TEST_CASE("the type of the stored text does not matter") {
    const Machine machine;
    set_value(HKEY_LOCAL_MACHINE, client_state_32, L"EBWebView", Machine::place_runtime(L"120.0.2210.91"),
              REG_EXPAND_SZ);
    CHECK(Creation().has_environment());
}

TEST_CASE("a missing terminator of the stored text does not matter") {
    const Machine machine;
    const auto folder = Machine::place_runtime(L"120.0.2210.91");
    HKEY key = nullptr;
    REQUIRE(RegCreateKeyW(HKEY_LOCAL_MACHINE, client_state_32, &key) == 0);
    RegSetValueExW(key, L"EBWebView", 0, REG_SZ, reinterpret_cast<const BYTE*>(folder.c_str()),
                   static_cast<DWORD>(folder.size() * sizeof(wchar_t)));
    RegCloseKey(key);
    CHECK(Creation().has_environment());
}

TEST_CASE("the stored text may be longer than MAX_PATH") {
    const Machine machine;
    const auto near_by = Machine::place_runtime(L"120.0.2210.91");
    std::wstring far_away = L"\\\\?\\" + Machine::folder();
    for (int level = 0; level < 4; ++level) {
        far_away.append(L"\\").append(70, L'x');
    }
    far_away += L"\\120.0.2210.91";
    std::filesystem::create_directories(far_away + L"\\EBWebView\\x64");
    REQUIRE(CopyFileW(Machine::dll_of(near_by).c_str(), Machine::dll_of(far_away).c_str(), FALSE) != 0);
    Machine::register_for_machine(far_away);
    CHECK(Creation().has_environment());
}
