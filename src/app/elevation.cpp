#include "app/elevation.h"

#include <windows.h>
#include <shellapi.h>
#include <tlhelp32.h>

#include "common/owned.h"
#include "common/system_places.h"

namespace {

/// In characters, as Windows limits paths.
constexpr DWORD longest_path = 32767;

/// The process that started this one, which may have ended since; 0 when the system cannot tell.
DWORD parent_process_id() {
    const OwnedFile snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof(entry);
    if (!snapshot || Process32FirstW(snapshot.get(), &entry) == FALSE) {
        return 0;
    }
    do {
        if (entry.th32ProcessID == GetCurrentProcessId()) {
            return entry.th32ParentProcessID;
        }
    } while (Process32NextW(snapshot.get(), &entry) != FALSE);
    return 0;
}

/// Full path of a process's program; empty when it cannot be told.
std::wstring program_of(HANDLE process) {
    std::wstring path(longest_path, L'\0');
    DWORD length = longest_path;
    path.resize(QueryFullProcessImageNameW(process, 0, path.data(), &length) != FALSE ? length : 0);
    return path;
}

} // namespace

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

bool is_second_instance() {
    const OwnedHandle parent(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, parent_process_id()));
    if (!parent) {
        return false;
    }
    const std::wstring program = program_of(GetCurrentProcess());
    const std::wstring parent_program = program_of(parent.get());
    return !program.empty() &&
           CompareStringOrdinal(program.c_str(), -1, parent_program.c_str(), -1, TRUE) == CSTR_EQUAL;
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
