#include <doctest/doctest.h>
#include <set>
#include <string>
#include <vector>

#include <windows.h>
#include <shellapi.h>
#include <winternl.h>

#include "app/elevation.h"
#include "before_each_case.h"
#include "child_roles.h"
#include "intercepted_call.h"
#include "started_program.h"
#include "test_files.h"

namespace {

// Written by the stand-ins below, on the test's thread.
int g_shell_calls = 0;
bool g_shell_succeeds = false;
HANDLE g_second_instance = nullptr;

BOOL WINAPI checked_execute(SHELLEXECUTEINFOW* execute) {
    ++g_shell_calls;
    CHECK(execute->cbSize == 112);
    CHECK(execute->fMask == SEE_MASK_NOCLOSEPROCESS);
    CHECK(execute->hwnd == nullptr);
    CHECK(std::wstring(execute->lpVerb) == L"runas");
    CHECK(std::wstring(execute->lpFile) == test_program());
    CHECK(std::wstring(execute->lpParameters) == L"--source \"D:\\My media\"  -s caf\u00E9");
    CHECK(execute->lpDirectory == nullptr);
    CHECK(execute->nShow == SW_SHOWNORMAL);
    execute->hProcess = g_second_instance;
    SetLastError(ERROR_CANCELLED);
    return g_shell_succeeds ? TRUE : FALSE;
}

HANDLE g_waited_for = nullptr;
DWORD g_waited_ms = 0;
const BeforeEachCase start_anew([] {
    g_shell_calls = 0;
    g_shell_succeeds = false;
    g_second_instance = nullptr;
    g_waited_for = nullptr;
    g_waited_ms = 0;
});

DWORD WINAPI noted_wait(HANDLE object, DWORD timeout_ms) {
    g_waited_for = object;
    g_waited_ms = timeout_ms;
    return real_function<decltype(WaitForSingleObject)>("WaitForSingleObject")(object, timeout_ms);
}

BOOL WINAPI no_sid(PSID_IDENTIFIER_AUTHORITY /*authority*/, BYTE /*count*/, DWORD /*a*/, DWORD /*b*/,
                   DWORD /*c*/, DWORD /*d*/, DWORD /*e*/, DWORD /*f*/, DWORD /*g*/, DWORD /*h*/,
                   PSID* /*sid*/) {
    return FALSE;
}

BOOL WINAPI checked_sid(PSID_IDENTIFIER_AUTHORITY authority, BYTE count, DWORD a, DWORD b, DWORD c, DWORD d,
                        DWORD e, DWORD f, DWORD g, DWORD h, PSID* sid) {
    CHECK(authority->Value[5] == 5);
    CHECK(count == 2);
    CHECK(a == 32);
    CHECK(b == 544);
    return real_function<decltype(AllocateAndInitializeSid)>("AllocateAndInitializeSid")(
        authority, count, a, b, c, d, e, f, g, h, sid);
}

BOOL WINAPI no_answer(HANDLE token, PSID /*sid*/, PBOOL is_member) {
    CHECK(token == nullptr);
    *is_member = TRUE;
    return FALSE;
}

HANDLE WINAPI no_open_process(DWORD access, BOOL /*inherit*/, DWORD /*id*/) {
    CHECK(access == PROCESS_QUERY_LIMITED_INFORMATION);
    return nullptr;
}

HANDLE WINAPI no_snapshot(DWORD /*flags*/, DWORD /*id*/) {
    return INVALID_HANDLE_VALUE;
}

/// The command line that a process was started with, from its own memory.
std::wstring command_line_of(HANDLE process) {
    PROCESS_BASIC_INFORMATION basic = {};
    REQUIRE(NtQueryInformationProcess(process, ProcessBasicInformation, &basic, sizeof basic, nullptr) == 0);
    PEB block = {};
    REQUIRE(ReadProcessMemory(process, basic.PebBaseAddress, &block, sizeof block, nullptr) != FALSE);
    RTL_USER_PROCESS_PARAMETERS parameters = {};
    REQUIRE(ReadProcessMemory(process, block.ProcessParameters, &parameters, sizeof parameters, nullptr) !=
            FALSE);
    std::wstring text(parameters.CommandLine.Length / sizeof(wchar_t), L'\0');
    REQUIRE(ReadProcessMemory(process, parameters.CommandLine.Buffer, text.data(),
                              parameters.CommandLine.Length, nullptr) != FALSE);
    return text;
}

/// What a debugged program did and which children it and they had. A child is ended before its first
/// instruction, or left alone.
struct WatchedRun {
    std::vector<std::wstring> children;
    DWORD exit_code = 0;
};

enum class Children { ended_at_once, left_alone };

WatchedRun watch(const StartedProgram& program, Children children) {
    WatchedRun run;
    for (;;) {
        DEBUG_EVENT event = {};
        REQUIRE(WaitForDebugEvent(&event, 30000) != FALSE);
        if (event.dwDebugEventCode == CREATE_PROCESS_DEBUG_EVENT) {
            HANDLE process = event.u.CreateProcessInfo.hProcess;
            if (event.dwProcessId != program.id()) {
                run.children.push_back(command_line_of(process));
                // However many there are, they must not go on for ever.
                if (children == Children::ended_at_once || run.children.size() > 3) {
                    TerminateProcess(process, 5);
                }
            }
            CloseHandle(event.u.CreateProcessInfo.hFile);
        }
        const bool is_over =
            event.dwDebugEventCode == EXIT_PROCESS_DEBUG_EVENT && event.dwProcessId == program.id();
        if (is_over) {
            run.exit_code = event.u.ExitProcess.dwExitCode;
        }
        const DWORD answer = event.dwDebugEventCode == EXCEPTION_DEBUG_EVENT &&
                                     event.u.Exception.ExceptionRecord.ExceptionCode != EXCEPTION_BREAKPOINT
                                 ? DBG_EXCEPTION_NOT_HANDLED
                                 : DBG_CONTINUE;
        ContinueDebugEvent(event.dwProcessId, event.dwThreadId, answer);
        if (is_over) {
            return run;
        }
    }
}

} // namespace

TEST_CASE("a member of the Administrators group is elevated and nobody else is") {
    {
        const InterceptedCall sid("AllocateAndInitializeSid", checked_sid);
        CHECK(is_elevated());
    }
    const std::vector<std::pair<std::wstring, std::wstring>> role = {{role_variable, role_tell_elevation}};
    CHECK(StartedProgram(test_program(), L"", role).exit_code() == 1);
    const OwnedHandle token = restricted_token();
    CHECK(StartedProgram(test_program(), L"", role, token.get()).exit_code() == 0);
    {
        const InterceptedCall sid("AllocateAndInitializeSid", no_sid);
        CHECK_FALSE(is_elevated());
    }
    const InterceptedCall membership("CheckTokenMembership", no_answer);
    CHECK_FALSE(is_elevated());
}

// Fixed behaviour: every detail of the request is prescribed.
TEST_CASE("the second instance is asked for with every detail and waited for") {
    const InterceptedCall execute("ShellExecuteExW", checked_execute);
    // Refused at the prompt; what is in the handle then is nobody's.
    relaunch_elevated(relaunched_arguments());
    g_shell_succeeds = true;
    relaunch_elevated(relaunched_arguments());
    CHECK(g_shell_calls == 2);

    const StartedProgram second(test_program(), L"", {{role_variable, role_relaunched}});
    REQUIRE(DuplicateHandle(GetCurrentProcess(), second.handle(), GetCurrentProcess(), &g_second_instance, 0,
                            FALSE, DUPLICATE_SAME_ACCESS) != FALSE);
    {
        const InterceptedCall wait("WaitForSingleObject", noted_wait);
        relaunch_elevated(relaunched_arguments());
    }
    CHECK(g_waited_for == g_second_instance);
    CHECK(g_waited_ms == INFINITE);
    CHECK_FALSE(second.is_running());
    DWORD flags = 0;
    CHECK(GetHandleInformation(g_second_instance, &flags) == FALSE);
}

TEST_CASE("a restricted process starts itself again with its arguments and outlives the second instance") {
    const OwnedHandle token = restricted_token();
    const StartedProgram first(test_program(), L"its own arguments", {{role_variable, role_relaunch}},
                               token.get());
    // 0 says that the second instance had written its file when the first went on.
    CHECK(first.exit_code() == 0);
    CHECK(bytes_of(relaunched_file) ==
          utf8_from_wide(L"\"" + test_program() + L"\" --source \"D:\\My media\"  -s caf\u00E9"));
}

TEST_CASE("the finished program relaunches itself once when it is restricted and ends with 0") {
    const std::wstring program = path_from_environment(L"ORVANTA_PROGRAM");
    const OwnedHandle token = restricted_token();
    const StartedProgram restricted(program, L"--source \"D:\\My media\" --uninstall", {}, token.get(),
                                    DEBUG_PROCESS);
    const WatchedRun run = watch(restricted, Children::ended_at_once);
    CHECK(run.exit_code == 0);
    CHECK(run.children ==
          std::vector<std::wstring>{L"\"" + program + L"\" --source \"D:\\My media\" --uninstall"});
}

TEST_CASE("a second instance that is not elevated either ends with 0 and starts no third one") {
    const std::wstring program = path_from_environment(L"ORVANTA_PROGRAM");
    // Not every Wine's "runas" withholds the rights, so this one was not started by it: its parent is an
    // instance that never begins.
    const StartedProgram first(program, L"", {}, nullptr, CREATE_SUSPENDED);
    const OwnedHandle token = restricted_token();
    const StartedProgram second(program, L"--silent", {}, token.get(), DEBUG_PROCESS, first.handle());
    const WatchedRun run = watch(second, Children::left_alone);
    CHECK(run.exit_code == 0);
    CHECK(run.children == std::vector<std::wstring>{});
    CHECK_FALSE(is_there(L"C:\\Program Files\\Brackenfold"));
}

TEST_CASE("an instance that another program started is no second one and one that cannot tell neither") {
    CHECK_FALSE(is_second_instance());
    const std::vector<std::pair<std::wstring, std::wstring>> role = {
        {role_variable, role_tell_second_instance}};
    CHECK(StartedProgram(test_program(), L"", role).exit_code() == 1);
    const std::wstring copy = L"C:\\another name.exe";
    copy_file(test_program(), copy);
    CHECK(StartedProgram(copy, L"", role).exit_code() == 0);
    const InterceptedCall parent("OpenProcess", no_open_process);
    CHECK_FALSE(is_second_instance());
    const InterceptedCall snapshot("CreateToolhelp32Snapshot", no_snapshot);
    CHECK_FALSE(is_second_instance());
}
