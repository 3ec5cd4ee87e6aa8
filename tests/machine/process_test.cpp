#include "common/process.h"

#include <doctest/doctest.h>
#include <string>
#include <vector>

#include <windows.h>

#include "before_each_case.h"
#include "common/pause.h"
#include "console/update_task.h"
#include "intercepted_call.h"
#include "read_task.h"
#include "recorded_reports.h"
#include "test_files.h"

namespace {

// Written by the stand-ins below, on the test's thread.
std::vector<DWORD> g_timeouts_ms;
std::wstring g_command_line;
const BeforeEachCase start_anew([] {
    g_timeouts_ms.clear();
    g_command_line.clear();
});

DWORD WINAPI timed_out(HANDLE /*process*/, DWORD timeout_ms) {
    g_timeouts_ms.push_back(timeout_ms);
    return WAIT_TIMEOUT;
}

BOOL WINAPI checked_start(LPCWSTR program, LPWSTR command_line, LPSECURITY_ATTRIBUTES process,
                          LPSECURITY_ATTRIBUTES thread, BOOL inherit, DWORD flags, LPVOID environment,
                          LPCWSTR directory, LPSTARTUPINFOW startup, LPPROCESS_INFORMATION information) {
    CHECK(std::wstring(program) == L"C:\\Windows\\System32\\cmd.exe");
    CHECK(process == nullptr);
    CHECK(thread == nullptr);
    CHECK(inherit == FALSE);
    CHECK(flags == CREATE_NO_WINDOW);
    CHECK(environment == nullptr);
    CHECK(directory == nullptr);
    CHECK(startup->cb == sizeof(STARTUPINFOW));
    CHECK(startup->dwFlags == STARTF_USESHOWWINDOW);
    CHECK(startup->wShowWindow == SW_HIDE);
    g_command_line = command_line;
    // The command line has to be writable.
    command_line[0] = L'/';
    return real_function<decltype(CreateProcessW)>("CreateProcessW")(
        program, command_line, process, thread, inherit, flags, environment, directory, startup, information);
}

void WINAPI noted_sleep(DWORD duration_ms) {
    g_timeouts_ms.push_back(duration_ms);
}

std::vector<HANDLE> g_started;

BOOL WINAPI noted_start(LPCWSTR program, LPWSTR command_line, LPSECURITY_ATTRIBUTES process,
                        LPSECURITY_ATTRIBUTES thread, BOOL inherit, DWORD flags, LPVOID environment,
                        LPCWSTR directory, LPSTARTUPINFOW startup, LPPROCESS_INFORMATION information) {
    const BOOL started = real_function<decltype(CreateProcessW)>("CreateProcessW")(
        program, command_line, process, thread, inherit, flags, environment, directory, startup, information);
    g_started.push_back(information->hProcess);
    g_started.push_back(information->hThread);
    return started;
}

bool is_open(HANDLE handle) {
    DWORD flags = 0;
    return GetHandleInformation(handle, &flags) != FALSE;
}

} // namespace

// Fixed behaviour: every argument of the start is prescribed.
TEST_CASE("a command runs without a window to its end and a pause is a sleep") {
    const InterceptedCall start("CreateProcessW", checked_start);
    CHECK(run_hidden_command(L"/C schtasks one \"two three\" & exit 3", 60000));
    CHECK(g_command_line == L"/C schtasks one \"two three\" & exit 3");
    CHECK(read_task_calls() == std::vector<std::wstring>{L"schtasks one \"two three\" "});

    const InterceptedCall sleep("Sleep", noted_sleep);
    g_pause(1500);
    CHECK(g_timeouts_ms == std::vector<DWORD>{1500});
}

// Fixed behaviour: the times are prescribed.
TEST_CASE("a slow task scheduler is waited for 15 and 10 seconds and then left alone") {
    RecordedReports reports;
    {
        const InterceptedCall start("CreateProcessW", noted_start);
        const InterceptedCall wait("WaitForSingleObject", timed_out);
        schedule_weekly_update(reports.progress);
        remove_weekly_update(reports.progress);
    }
    CHECK(g_timeouts_ms == std::vector<DWORD>{15000, 10000});
    CHECK(reports.all == Reports{{"Scheduled weekly update", true}, {"Removed scheduled task", true}});
    CHECK(g_started.size() == 4);
    for (HANDLE handle : g_started) {
        CHECK_FALSE(is_open(handle));
    }
}
