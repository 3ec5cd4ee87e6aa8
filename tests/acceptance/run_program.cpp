#include "run_program.h"

namespace {

constexpr DWORD moment_ms = 50;

// Closes what it holds at the end of its scope.
struct HeldHandle {
    HANDLE handle = nullptr;

    explicit HeldHandle(HANDLE from) : handle(from) {}
    HeldHandle(const HeldHandle&) = delete;
    HeldHandle& operator=(const HeldHandle&) = delete;
    ~HeldHandle() { CloseHandle(handle); }
};

// Suspended, so that whatever it starts is in the job as well.
bool start_in_job(std::wstring command_line, HANDLE job, PROCESS_INFORMATION& process) {
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    if (CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, FALSE, CREATE_SUSPENDED, nullptr,
                       nullptr, &startup, &process) == FALSE) {
        return false;
    }
    AssignProcessToJobObject(job, process.hProcess);
    ResumeThread(process.hThread);
    CloseHandle(process.hThread);
    return true;
}

} // namespace

ProgramEnd run_program(const std::wstring& command_line, DWORD limit_s,
                       const std::function<void(const RunningProgram&)>& meanwhile) {
    const HeldHandle job(CreateJobObjectW(nullptr, nullptr));
    PROCESS_INFORMATION information = {};
    if (!start_in_job(command_line, job.handle, information)) {
        return {};
    }
    const HeldHandle process(information.hProcess);
    const ULONGLONG end_ms = GetTickCount64() + ULONGLONG{limit_s} * 1000;
    if (meanwhile) {
        meanwhile({information.dwProcessId, [&] {
                       return WaitForSingleObject(process.handle, moment_ms) == WAIT_TIMEOUT &&
                              GetTickCount64() < end_ms;
                   }});
    }
    const ULONGLONG now_ms = GetTickCount64();
    const DWORD rest_ms = now_ms < end_ms ? static_cast<DWORD>(end_ms - now_ms) : 0;
    if (WaitForSingleObject(process.handle, rest_ms) != WAIT_OBJECT_0) {
        TerminateJobObject(job.handle, 1);
        TerminateProcess(process.handle, 1); // when the job did not take it
        WaitForSingleObject(process.handle, INFINITE);
        return {true, std::nullopt};
    }
    DWORD code = 0;
    GetExitCodeProcess(process.handle, &code);
    return {true, code};
}

std::wstring end_text(const ProgramEnd& end, DWORD limit_s) {
    if (!end.has_started) {
        return L"none: it could not be started";
    }
    return end.exit_code ? std::to_wstring(*end.exit_code)
                         : L"none: ended after the limit of " + std::to_wstring(limit_s) + L" s";
}
