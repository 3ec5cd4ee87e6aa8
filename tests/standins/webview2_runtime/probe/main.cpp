// A program that does with a WebView2 runtime what the lines on its standard input say, one after the
// other, and prints what comes of it. For the tests of the stand-in runtime alone.
//
//   webview2_probe RUNTIME.dll

#include <cstdio>
#include <iostream>
#include <memory>
#include <string>
#include <utility>

#include <objbase.h>

#include "commands.h"
#include "objects.h"
#include "system_threads.h"

namespace {

constexpr UINT command_message = WM_APP + 7;

LRESULT CALLBACK window_procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
    if (message == command_message) {
        const std::unique_ptr<std::string> line(reinterpret_cast<std::string*>(lparam));
        run_command(window, *line);
        return 0;
    }
    return DefWindowProcW(window, message, wparam, lparam);
}

/// The window that takes commands; the view's parent is a child of its own, so that it can be destroyed.
HWND create_window() {
    WNDCLASSEXW description = {};
    description.cbSize = sizeof(description);
    description.lpfnWndProc = window_procedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = L"WebView2Probe";
    RegisterClassExW(&description);
    return CreateWindowExW(0, description.lpszClassName, L"WebView2 probe", WS_POPUP | WS_VISIBLE, 0, 0, 920,
                           640, nullptr, nullptr, description.hInstance, nullptr);
}

void post_command(HWND window, std::string line) {
    auto owned = std::make_unique<std::string>(std::move(line));
    if (PostMessageW(window, command_message, 0, reinterpret_cast<LPARAM>(owned.get())) != 0) {
        static_cast<void>(owned.release()); // the window procedure has it now
    }
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): nothing is left to delete after the post
}

/// The end of the input ends the program.
void read_commands(HWND window) {
    for (std::string line; std::getline(std::cin, line);) {
        post_command(window, line);
    }
    post_command(window, "quit");
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::puts("usage: webview2_probe RUNTIME.dll");
        return 2;
    }
    SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE); // else every screen has 96 DPI
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
        return 3;
    }
    HWND window = create_window();
    if (window == nullptr || !load_runtime(argv[1])) {
        std::printf("not started: error %lu\n", GetLastError());
        return 3;
    }
    start_detached_thread([window] { read_commands(window); });

    MSG message = {};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    release_everything();
    CoUninitialize();
    return static_cast<int>(message.wParam);
}
