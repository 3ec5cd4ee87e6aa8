#include "browsers/closing.h"

#include <doctest/doctest.h>
#include <string>
#include <vector>

#include <windows.h>
#include <aclapi.h>
#include <tlhelp32.h>

#include "before_each_case.h"
#include "expected_browsers.h"
#include "intercepted_call.h"
#include "recorded_pauses.h"
#include "recorded_reports.h"
#include "started_program.h"
#include "test_files.h"

namespace {

StartedProgram run_as(const std::wstring& name) {
    const std::wstring program = L"C:\\Programs\\" + name;
    if (!is_there(program)) {
        copy_file(path_from_environment(L"ORVANTA_BROWSER"), program);
    }
    return StartedProgram(program, L"--stay");
}

std::vector<StartedProgram> run_all_as(const std::vector<std::wstring>& names) {
    std::vector<StartedProgram> programs;
    programs.reserve(names.size());
    for (const std::wstring& name : names) {
        programs.push_back(run_as(name));
    }
    return programs;
}

/// Nobody may end or wait for the process any more.
void protect(const StartedProgram& program) {
    ACL nothing_allowed = {};
    REQUIRE(InitializeAcl(&nothing_allowed, sizeof nothing_allowed, ACL_REVISION) != FALSE);
    REQUIRE(SetSecurityInfo(program.handle(), SE_KERNEL_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr,
                            &nothing_allowed, nullptr) == ERROR_SUCCESS);
}

HANDLE WINAPI no_snapshot(DWORD /*flags*/, DWORD /*process*/) {
    return INVALID_HANDLE_VALUE;
}

// Written by the stand-ins below, on the test's thread.
DWORD g_asked_rights = 0;
DWORD g_asked_timeout_ms = 0;
const BeforeEachCase start_anew([] { g_asked_rights = g_asked_timeout_ms = 0; });

HANDLE WINAPI open_and_note(DWORD rights, BOOL inherit, DWORD process) {
    CHECK(inherit == FALSE);
    g_asked_rights = rights;
    return real_function<decltype(OpenProcess)>("OpenProcess")(rights, inherit, process);
}

BOOL WINAPI no_end(HANDLE /*process*/, UINT exit_code) {
    CHECK(exit_code == 0);
    SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
}

DWORD WINAPI never_ends(HANDLE /*process*/, DWORD timeout_ms) {
    g_asked_timeout_ms = timeout_ms;
    return WAIT_TIMEOUT;
}

} // namespace

TEST_CASE("without a running browser nothing is closed and nothing waited for") {
    RecordedPauses pauses;
    RecordedReports reports;
    CHECK(close_browsers(reports.progress) == 0);
    CHECK(reports.all == Reports{{"No browsers running", true}});
    CHECK(pauses.all.empty());
}

TEST_CASE("every instance of every known browser is ended and counted in whatever letter case") {
    std::vector<std::wstring> names = {L"Chrome.EXE", L"BRAVE.exe", L"OPERA.EXE"};
    for (const ExpectedBrowser& browser : expected_browsers) {
        names.push_back(browser.program);
    }
    const std::vector<StartedProgram> browsers = run_all_as(names);
    const std::vector<StartedProgram> others =
        run_all_as({L"firefox.exe", L"chrome_proxy.exe", L"chrome.exe.exe", L"xchrome.exe", L"msedge.com"});
    RecordedPauses pauses;
    RecordedReports reports;
    size_t reports_before_pause = 0;
    pauses.during = [&] { reports_before_pause = reports.all.size(); };

    CHECK(close_browsers(reports.progress) == static_cast<int>(names.size()));

    CHECK(reports.all == Reports{{"Closed " + std::to_string(names.size()) + " browser process(es)", true}});
    CHECK(pauses.all == std::vector<unsigned long>{1500});
    CHECK(reports_before_pause == 1);
    for (const StartedProgram& browser : browsers) {
        CHECK_FALSE(browser.is_running());
        CHECK(browser.exit_code() == 0);
    }
    for (const StartedProgram& other : others) {
        CHECK(other.is_running());
    }
}

TEST_CASE("browsers that may not be ended are passed over and alone count as none running") {
    const StartedProgram protected_browser = run_as(L"chrome.exe");
    protect(protected_browser);
    RecordedPauses pauses;
    {
        RecordedReports reports;
        CHECK(close_browsers(reports.progress) == 0);
        CHECK(reports.all == Reports{{"No browsers running", true}});
        CHECK(pauses.all.empty());
    }
    const StartedProgram other = run_as(L"vivaldi.exe");
    RecordedReports reports;
    CHECK(close_browsers(reports.progress) == 1);
    CHECK(reports.all == Reports{{"Closed 1 browser process(es)", true}});
    CHECK(pauses.all == std::vector<unsigned long>{1500});
    CHECK(protected_browser.is_running());
    CHECK_FALSE(other.is_running());
}

// Fixed behaviour: the rights and the time are prescribed.
TEST_CASE("a browser that has not gone after three seconds counts all the same") {
    const StartedProgram browser = run_as(L"msedge.exe");
    RecordedPauses pauses;
    RecordedReports reports;
    {
        const InterceptedCall open("OpenProcess", open_and_note);
        const InterceptedCall wait("WaitForSingleObject", never_ends);
        CHECK(close_browsers(reports.progress) == 1);
    }
    CHECK(reports.all == Reports{{"Closed 1 browser process(es)", true}});
    CHECK(g_asked_rights == (PROCESS_TERMINATE | SYNCHRONIZE));
    CHECK(g_asked_timeout_ms == 3000);
}

TEST_CASE("a browser that opens but does not let itself be ended is neither waited for nor counted") {
    const StartedProgram browser = run_as(L"msedge.exe");
    RecordedPauses pauses;
    RecordedReports reports;
    {
        const InterceptedCall end("TerminateProcess", no_end);
        const InterceptedCall wait("WaitForSingleObject", never_ends);
        CHECK(close_browsers(reports.progress) == 0);
    }
    CHECK(reports.all == Reports{{"No browsers running", true}});
    CHECK(pauses.all.empty());
    CHECK(g_asked_timeout_ms == 0);
    CHECK(browser.is_running());
}

TEST_CASE("when the processes cannot be listed nothing is reported") {
    const StartedProgram browser = run_as(L"msedge.exe");
    RecordedPauses pauses;
    RecordedReports reports;
    const InterceptedCall snapshot("CreateToolhelp32Snapshot", no_snapshot);
    CHECK(close_browsers(reports.progress) == 0);
    CHECK(reports.all.empty());
    CHECK(pauses.all.empty());
    CHECK(browser.is_running());
}
