#include "app/elevation.h"

#include <windows.h>

#include <shellapi.h>

#include "common/owned.h"
#include "common/program_path.h"

bool is_elevated() {
    SID_IDENTIFIER_AUTHORITY authority = SECURITY_NT_AUTHORITY;
    PSID administrators = nullptr;
    if (AllocateAndInitializeSid(&authority, 2, SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS, 0, 0, 0,
                                 0, 0, 0, &administrators) == FALSE) {
        return false;
    }
    BOOL is_member = FALSE;
    const bool checked = CheckTokenMembership(nullptr, administrators, &is_member) != FALSE;
    FreeSid(administrators);
    return checked && is_member != FALSE;
}

std::wstring relaunch_parameters(const std::vector<std::wstring>& arguments) {
    std::wstring parameters;
    for (size_t i = 1; i < arguments.size(); ++i) {
        if (i > 1) {
            parameters += L' ';
        }
        const std::wstring& argument = arguments[i];
        // No more than this on purpose: embedded quotes and backslashes reach the second instance as they
        // are.
        const bool has_blank = argument.find(L' ') != std::wstring::npos;
        parameters += has_blank ? L'"' + argument + L'"' : argument;
    }
    return parameters;
}

void relaunch_elevated(const std::vector<std::wstring>& arguments) {
    const std::wstring program = running_program_path();
    const std::wstring parameters = relaunch_parameters(arguments);
    SHELLEXECUTEINFOW execute = {};
    execute.cbSize = sizeof(execute);
    execute.fMask = SEE_MASK_NOCLOSEPROCESS;
    execute.lpVerb = L"runas";
    execute.lpFile = program.c_str();
    execute.lpParameters = parameters.c_str();
    execute.nShow = SW_SHOWNORMAL;
    if (ShellExecuteExW(&execute) == FALSE) {
        // Refused at the prompt, most likely: the user knows.
        return;
    }
    const OwnedHandle process(execute.hProcess);
    if (process) {
        WaitForSingleObject(process.get(), INFINITE);
    }
}
