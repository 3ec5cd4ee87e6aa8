#include "fresh_machine.h"

#include <doctest/doctest.h>
#include <string>

#include <windows.h>

#include "before_each_case.h"
#include "readable.h"
#include "registered_service.h"
#include "started_program.h"
#include "test_files.h"
#include "test_registry.h"

namespace {

int g_starts = 0;
const BeforeEachCase count_start([] { ++g_starts; });

} // namespace

TEST_CASE("the work for the start of a case is done for every pass of it") {
    const int starts = g_starts;
    CHECK(starts > 0);
    static int starts_of_first_pass = 0;
    SUBCASE("first pass") {
        starts_of_first_pass = starts;
    }
    SUBCASE("second pass") {
        CHECK(starts == starts_of_first_pass + 1);
    }
}

TEST_CASE("a machine made fresh has lost what came and kept what was there") {
    const std::wstring key = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall";
    const std::wstring desktop = L"C:\\users\\Public\\Desktop";
    REQUIRE(key_is_there(key));
    REQUIRE(is_there(desktop));
    const std::vector<std::wstring> keys_before = subkeys_of(key);
    const std::vector<std::wstring> users_before = paths_below(L"C:\\users");
    wchar_t folder_before[MAX_PATH] = {};
    GetCurrentDirectoryW(MAX_PATH, folder_before);

    deploy_program("ignore_stop_ms 60000");
    REQUIRE(register_service().result);
    REQUIRE(state_of_service() == L"running");
    copy_file(path_from_environment(L"ORVANTA_BROWSER"), L"C:\\Programs\\running.exe");
    const StartedProgram running(L"C:\\Programs\\running.exe", L"--stay");
    write_file(desktop + L"\\deep\\read-only.txt", "x", FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
    make_link(desktop + L"\\deep\\link", L"C:\\Programs");
    make_link(L"C:\\link to Windows", L"C:\\windows");
    set_text(key + L"\\Entry\\deep", L"", L"x");
    set_text(key + L"\\Entry of 32 bits", L"", L"x", REG_SZ, View::bits_32);
    REQUIRE(MoveFileExW(L"C:\\Programs\\running.exe", nullptr, MOVEFILE_DELAY_UNTIL_REBOOT) != FALSE);
    REQUIRE(SetCurrentDirectoryW(L"C:\\Programs") != FALSE);

    make_machine_fresh();

    CHECK_FALSE(running.is_running());
    CHECK(state_of_service() == L"absent");
    CHECK_FALSE(is_there(L"C:\\Program Files\\Brackenfold"));
    CHECK_FALSE(is_there(L"C:\\Programs"));
    CHECK_FALSE(is_there(L"C:\\link to Windows"));
    CHECK(is_there(L"C:\\windows\\explorer.exe"));
    CHECK(paths_below(L"C:\\users") == users_before);
    CHECK(subkeys_of(key) == keys_before);
    CHECK_FALSE(key_is_there(key + L"\\Entry of 32 bits", View::bits_32));
    CHECK(pending_deletions().empty());
    wchar_t folder_after[MAX_PATH] = {};
    GetCurrentDirectoryW(MAX_PATH, folder_after);
    CHECK(std::wstring(folder_after) == folder_before);
}
