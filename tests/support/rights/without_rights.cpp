// Starts a program without administrator rights:
//
//   without_rights.exe PROGRAM [ARGUMENT ...]    the exit code is the program's, or 99 when it could not be
//   started without_rights.exe --what-runas-gives        whether this machine's "runas" gives them back: 1 or
//   0, else 99
#include <cwchar>
#include <string>

#include <windows.h>
#include <shellapi.h>

#include "restricted_token.h"

namespace {

constexpr int exit_code_failed = 99;

int exit_code_of(HANDLE process) {
    DWORD code = exit_code_failed;
    if (process != nullptr) {
        WaitForSingleObject(process, INFINITE);
        GetExitCodeProcess(process, &code);
    }
    return static_cast<int>(code);
}

int run_without_rights(std::wstring command_line) {
    const OwnedHandle token = make_restricted_token();
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION information = {};
    if (!token || CreateProcessAsUserW(token.get(), nullptr, command_line.data(), nullptr, nullptr, FALSE, 0,
                                       nullptr, nullptr, &startup, &information) == FALSE) {
        return exit_code_failed;
    }
    const OwnedHandle process(information.hProcess);
    const OwnedHandle thread(information.hThread);
    return exit_code_of(process.get());
}

int run_with_runas(const std::wstring& program, const wchar_t* arguments) {
    SHELLEXECUTEINFOW execute = {};
    execute.cbSize = sizeof execute;
    execute.fMask = SEE_MASK_NOCLOSEPROCESS;
    execute.lpVerb = L"runas";
    execute.lpFile = program.c_str();
    execute.lpParameters = arguments;
    execute.nShow = SW_HIDE;
    if (ShellExecuteExW(&execute) == FALSE) {
        return exit_code_failed;
    }
    const OwnedHandle process(execute.hProcess);
    return exit_code_of(process.get());
}

/// 1 when this process is a member of the Administrators group, 0 when not.
int tell_membership() {
    BYTE administrators[SECURITY_MAX_SID_SIZE] = {};
    DWORD size = sizeof administrators;
    BOOL is_member = FALSE;
    if (CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, administrators, &size) == FALSE ||
        CheckTokenMembership(nullptr, administrators, &is_member) == FALSE) {
        return exit_code_failed;
    }
    return is_member != FALSE ? 1 : 0;
}

} // namespace

int wmain(int argument_count, wchar_t** arguments) {
    wchar_t program[MAX_PATH] = {};
    if (argument_count < 2 || GetModuleFileNameW(nullptr, program, MAX_PATH) == 0) {
        return exit_code_failed;
    }
    const std::wstring verb = arguments[1];
    const std::wstring quoted = L"\"" + std::wstring(program) + L"\"";
    if (verb == L"--what-runas-gives") {
        return run_without_rights(quoted + L" --runas");
    }
    if (verb == L"--runas") {
        return tell_membership() == 0 ? run_with_runas(program, L"--tell") : exit_code_failed;
    }
    if (verb == L"--tell") {
        return tell_membership();
    }
    // The rest of the command line as it stands; a path to this program holds no quotation mark.
    const wchar_t* rest = GetCommandLineW();
    rest = *rest == L'"' ? std::wcschr(rest + 1, L'"') + 1 : rest + std::wcscspn(rest, L" \t");
    return run_without_rights(rest + std::wcsspn(rest, L" \t"));
}
