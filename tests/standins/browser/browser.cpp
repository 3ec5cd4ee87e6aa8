// Takes the place of a browser on a test machine, copied as msedge.exe,
// chrome.exe and so on: writes its own path, a tab and its command line, exactly
// as it was started, to C:\browsers.log. With --stay it then keeps running until
// somebody ends it, two minutes at most, or --stay=MILLISECONDS; the exit code is
// 98 when nobody did. With --exit=CODE it ends at once with that code.
#include <cstdlib>
#include <string_view>

#include <windows.h>

#include "append_line.h"

namespace {

constexpr std::wstring_view stay_option = L"--stay";
constexpr std::wstring_view exit_option = L"--exit=";
constexpr int nobody_ended_it = 98;

DWORD longest_stay_ms(const wchar_t* behind_option) {
    return *behind_option == L'=' ? std::wcstoul(behind_option + 1, nullptr, 10) : 120000;
}

} // namespace

int WINAPI WinMain(HINSTANCE /*instance*/, HINSTANCE /*previous*/, LPSTR /*arguments*/, int /*show*/) {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    const std::wstring_view command_line = GetCommandLineW();
    if (!append_line(L"C:\\browsers.log", {path, L"\t", command_line})) {
        return 99;
    }
    const std::size_t exit = command_line.find(exit_option);
    if (exit != std::wstring_view::npos) {
        return static_cast<int>(std::wcstol(command_line.data() + exit + exit_option.size(), nullptr, 10));
    }
    const std::size_t stay = command_line.find(stay_option);
    if (stay == std::wstring_view::npos) {
        return 0;
    }
    Sleep(longest_stay_ms(command_line.data() + stay + stay_option.size()));
    return nobody_ended_it;
}
