// Takes the place of a browser on a test machine, copied as msedge.exe,
// chrome.exe and so on: writes its own path, a tab and its command line, exactly
// as it was started, to C:\browsers.log. With --stay it then keeps running until
// somebody ends it, two minutes at most.
#include "append_line.h"

#include <string_view>

#include <windows.h>

int WINAPI WinMain(HINSTANCE /*instance*/, HINSTANCE /*previous*/, LPSTR /*arguments*/, int /*show*/) {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    const std::wstring_view command_line = GetCommandLineW();
    if (!append_line(L"C:\\browsers.log", {path, L"\t", command_line})) {
        return 99;
    }
    if (command_line.find(L"--stay") != std::wstring_view::npos) {
        Sleep(120000);
    }
    return 0;
}
