// The steps of a start, seen at the calls to Windows.
// Fixed behaviour: which steps there are and their order are prescribed.
#include "app/startup.h"

#include <doctest/doctest.h>
#include <string>
#include <vector>

#include <windows.h>
#include <shellapi.h>

#include "before_each_case.h"
#include "common/installation_medium.h"
#include "intercepted_call.h"
#include "readable.h"
#include "test_files.h"
#include "ui/page_channel.h"

namespace {

using Steps = std::vector<std::wstring>;

// Written by the stand-ins below, on the test's thread.
Steps g_steps;
bool g_is_administrator = true;
std::wstring g_command_line;
const BeforeEachCase start_anew([] {
    g_steps.clear();
    g_is_administrator = true;
});

BOOL WINAPI noted_hardening(DWORD /*flags*/) {
    g_steps.emplace_back(L"hardened");
    return TRUE;
}

BOOL WINAPI noted_dpi_awareness(DPI_AWARENESS_CONTEXT context) {
    g_steps.emplace_back(context == DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2 ? L"DPI aware" : L"DPI ?");
    return FALSE;
}

LPWSTR WINAPI given_command_line() {
    return g_command_line.data();
}

LPWSTR* WINAPI noted_split(LPCWSTR command_line, int* count) {
    // What the default source is has been settled before.
    g_steps.push_back(L"split, source " + g_source_dir);
    return real_function<decltype(CommandLineToArgvW)>("CommandLineToArgvW")(command_line, count);
}

LPWSTR* WINAPI no_split(LPCWSTR /*command_line*/, int* /*count*/) {
    g_steps.emplace_back(L"no split");
    return nullptr;
}

BOOL WINAPI noted_membership(HANDLE /*token*/, PSID /*group*/, PBOOL is_member) {
    g_steps.emplace_back(L"administrator?");
    *is_member = g_is_administrator ? TRUE : FALSE;
    return TRUE;
}

BOOL WINAPI noted_relaunch(SHELLEXECUTEINFOW* execute) {
    g_steps.push_back(std::wstring(L"relaunch ") + execute->lpParameters);
    SetLastError(ERROR_CANCELLED);
    return FALSE;
}

/// Takes the place of the message loop: the window is there, and is closed at once.
BOOL WINAPI noted_loop(LPMSG message, HWND /*window*/, UINT /*first*/, UINT /*last*/) {
    g_steps.emplace_back(IsWindowVisible(g_main_window) != FALSE ? L"window" : L"no window");
    message->wParam = 0;
    return FALSE;
}

std::wstring folder_of_test() {
    const std::wstring program = test_program();
    return program.substr(0, program.rfind(L'\\'));
}

/// Every call of the start-up that a test replaces but the split.
struct WatchedStartup {
    explicit WatchedStartup(const std::wstring& command_line) { g_command_line = command_line; }
    WatchedStartup(const WatchedStartup&) = delete;
    WatchedStartup& operator=(const WatchedStartup&) = delete;
    ~WatchedStartup() {
        if (g_main_window != nullptr) {
            DestroyWindow(g_main_window);
            g_main_window = nullptr;
        }
    }

    InterceptedCall hardening{"SetDefaultDllDirectories", noted_hardening};
    InterceptedCall dpi{"SetProcessDpiAwarenessContext", noted_dpi_awareness};
    InterceptedCall line{"GetCommandLineW", given_command_line};
    InterceptedCall membership{"CheckTokenMembership", noted_membership};
    InterceptedCall relaunch{"ShellExecuteExW", noted_relaunch};
    InterceptedCall loop{"GetMessageW", noted_loop};
};

} // namespace

TEST_CASE("an elevated start without options takes its steps in their order and opens the window") {
    const WatchedStartup startup(L"installer.exe --Silent /uninstall");
    const InterceptedCall split("CommandLineToArgvW", noted_split);
    CHECK(run_installer(GetModuleHandleW(nullptr)) == 0);
    CHECK(g_steps == Steps{L"hardened", L"DPI aware", L"split, source " + folder_of_test(), L"administrator?",
                           L"window"});
    CHECK(g_source_dir == folder_of_test());
    CHECK((GetThreadErrorMode() & SEM_FAILCRITICALERRORS) != 0);
}

TEST_CASE("a start without administrator rights passes its arguments on and ends with 0") {
    const WatchedStartup startup(L"installer.exe --uninstall --source \"D:\\My media\" --silent");
    const InterceptedCall split("CommandLineToArgvW", noted_split);
    g_is_administrator = false;
    CHECK(run_installer(GetModuleHandleW(nullptr)) == 0);
    CHECK(g_steps == Steps{L"hardened", L"DPI aware", L"split, source " + folder_of_test(), L"administrator?",
                           L"relaunch --uninstall --source \"D:\\My media\" --silent"});
    CHECK(g_source_dir == L"D:\\My media");
    CHECK(g_main_window == nullptr);
}

TEST_CASE("a command line that cannot be split opens the window or without rights ends with 0") {
    const WatchedStartup startup(L"installer.exe --silent");
    const InterceptedCall split("CommandLineToArgvW", no_split);
    g_is_administrator = false;
    CHECK(run_installer(GetModuleHandleW(nullptr)) == 0);
    CHECK(g_steps == Steps{L"hardened", L"DPI aware", L"no split", L"administrator?"});
    g_steps.clear();
    g_is_administrator = true;
    CHECK(run_installer(GetModuleHandleW(nullptr)) == 0);
    CHECK(g_steps == Steps{L"hardened", L"DPI aware", L"no split", L"administrator?", L"window"});
    CHECK(g_source_dir == folder_of_test());
}
