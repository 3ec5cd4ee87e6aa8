#include "append_line.h"

#include <windows.h>

namespace {

// The longest command line and a path, at most three bytes for each of their
// UTF-16 units. A fixed buffer keeps the recorders at a tenth of the size.
constexpr int longest_line = 3 * (32767 + MAX_PATH) + 2;
char g_line[longest_line]; // written by append_line alone

} // namespace

bool append_line(const wchar_t* path, std::initializer_list<std::wstring_view> parts) {
    int length = 0;
    for (const std::wstring_view part : parts) {
        if (part.empty()) {
            continue;
        }
        const int room = longest_line - 2 - length;
        const int bytes = WideCharToMultiByte(CP_UTF8, 0, part.data(), static_cast<int>(part.size()),
                                              g_line + length, room, nullptr, nullptr);
        if (bytes == 0) {
            return false;
        }
        length += bytes;
    }
    g_line[length++] = '\r';
    g_line[length++] = '\n';

    HANDLE file = CreateFileW(path, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                              OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    DWORD written = 0;
    const BOOL done = WriteFile(file, g_line, static_cast<DWORD>(length), &written, nullptr);
    CloseHandle(file);
    return done != FALSE && written == static_cast<DWORD>(length);
}
