#include <doctest/doctest.h>
#include <string>
#include <vector>

#include <windows.h>

#include "app/process_hardening.h"
#include "before_each_case.h"
#include "child_roles.h"
#include "common/quiet_thread.h"
#include "intercepted_call.h"
#include "started_program.h"
#include "test_files.h"

namespace {

// Written by the stand-ins below, on the test's thread.
std::vector<std::string> g_restrictions;
const BeforeEachCase start_anew([] { g_restrictions.clear(); });

BOOL WINAPI noted_directories(DWORD flags) {
    g_restrictions.push_back("default directories " + std::to_string(flags));
    return FALSE;
}

BOOL WINAPI noted_directory(LPCWSTR directory) {
    // An empty text takes the current folder out of the search; null would put it back.
    REQUIRE(directory != nullptr);
    g_restrictions.push_back("directory of " + std::to_string(std::wstring(directory).size()));
    return FALSE;
}

BOOL WINAPI noted_mode(DWORD flags) {
    g_restrictions.push_back("search path mode " + std::to_string(flags));
    return FALSE;
}

DWORD exit_code_of(const wchar_t* role) {
    return StartedProgram(test_program(), L"", {{role_variable, role}}).exit_code();
}

} // namespace

// Fixed behaviour: the three calls, their flags and their order are prescribed.
TEST_CASE("DLLs come from the system folder alone and commands never from the current one") {
    CHECK(NeedCurrentDirectoryForExePathW(L"schtasks") != FALSE);
    const InterceptedCall directories("SetDefaultDllDirectories", noted_directories);
    const InterceptedCall directory("SetDllDirectoryW", noted_directory);
    const InterceptedCall mode("SetSearchPathMode", noted_mode);
    restrict_search_paths();
    CHECK(NeedCurrentDirectoryForExePathW(L"schtasks") == FALSE);
    CHECK(g_restrictions ==
          std::vector<std::string>{
              "default directories " + std::to_string(LOAD_LIBRARY_SEARCH_SYSTEM32), "directory of 0",
              "search path mode " +
                  std::to_string(BASE_SEARCH_PATH_ENABLE_SAFE_SEARCHMODE | BASE_SEARCH_PATH_PERMANENT)});
}

TEST_CASE("an exception that nobody catches ends the process at once with 3") {
    CHECK(exit_code_unhandled == 3);
    CHECK(exit_code_of(role_throw) == 3);
}

TEST_CASE("an exception out of a run ends the process at once with 3") {
    CHECK(exit_code_of(role_throw_in_install_run) == 3);
    CHECK(exit_code_of(role_throw_in_uninstall_run) == 3);
    CHECK_FALSE(is_there(reports_file));
}

TEST_CASE("a function that has overrun its stack ends the process at once") {
    CHECK(exit_code_of(role_overrun_stack) == static_cast<DWORD>(STATUS_STACK_BUFFER_OVERRUN));
}

TEST_CASE("what guards the stack is another value in every process and cannot be part of a text") {
    const DWORD first = exit_code_of(role_tell_stack_guard);
    const DWORD second = exit_code_of(role_tell_stack_guard);
    CHECK(first != 0);
    CHECK(second != 0);
    CHECK(first != second);
}
