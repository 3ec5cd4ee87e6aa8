#include "common/process.h"

#include "common/owned.h"

bool run_hidden_command(const std::wstring& command_line, unsigned long timeout_ms) {
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = SW_HIDE;
    PROCESS_INFORMATION info = {};
    // CreateProcessW writes into the command line it is given.
    std::wstring writable = command_line;
    if (CreateProcessW(L"C:\\Windows\\System32\\cmd.exe", writable.data(), nullptr, nullptr, FALSE,
                       CREATE_NO_WINDOW, nullptr, nullptr, &startup, &info) == FALSE) {
        return false;
    }
    const OwnedHandle process(info.hProcess);
    const OwnedHandle thread(info.hThread);
    WaitForSingleObject(process.get(), timeout_ms);
    return true;
}
