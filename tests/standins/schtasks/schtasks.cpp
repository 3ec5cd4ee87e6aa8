// Takes the place of schtasks.exe on a test machine: writes its command line,
// exactly as it was started, to C:\schtasks.log and ends with the number in
// C:\schtasks.exit, or 0 without that file. Before it ends, it waits as long as
// there is a file C:\schtasks.hold.
#include <windows.h>

#include "append_line.h"

namespace {

unsigned wanted_exit_code() {
    HANDLE file =
        CreateFileW(L"C:\\schtasks.exit", GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return 0;
    }
    char digits[16] = {};
    DWORD count = 0;
    ReadFile(file, digits, sizeof digits, &count, nullptr);
    CloseHandle(file);
    unsigned code = 0;
    for (DWORD i = 0; i < count && digits[i] >= '0' && digits[i] <= '9'; ++i) {
        code = code * 10 + static_cast<unsigned>(digits[i] - '0');
    }
    return code;
}

} // namespace

int main() {
    // A recorder that cannot record must not look like a success.
    if (!append_line(L"C:\\schtasks.log", {GetCommandLineW()})) {
        return 99;
    }
    while (GetFileAttributesW(L"C:\\schtasks.hold") != INVALID_FILE_ATTRIBUTES) {
        Sleep(20);
    }
    return static_cast<int>(wanted_exit_code());
}
