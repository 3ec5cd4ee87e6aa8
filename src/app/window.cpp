#include "app/window.h"

#include <memory>
#include <string>

#include "app/webview_host.h"
#include "ui/page_channel.h"
#include "ui/page_text.h"

namespace {

constexpr wchar_t window_class_name[] = L"VeyraInstallerWnd";
constexpr wchar_t window_title[] = L"Veyra Security Suite \u2014 Setup";

/// Results are not checked: without a class there is no window, and without a window the loop still runs.
void register_window_class(HINSTANCE instance) {
    WNDCLASSEXW window_class = {};
    window_class.cbSize = sizeof(window_class);
    window_class.lpfnWndProc = wnd_proc;
    window_class.hInstance = instance;
    // On purpose a name that no resource has, as the icons carry numbers: the caption shows the system's own.
    window_class.hIcon = LoadIconW(instance, L"IDI_APPICON");
    window_class.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    window_class.hbrBackground =
        CreateSolidBrush(RGB(background_color.red, background_color.green, background_color.blue));
    window_class.lpszClassName = window_class_name;
    RegisterClassExW(&window_class);
}

void pin_tracking_size(HWND window, MINMAXINFO& limits) {
    const SIZE size = main_window_size(GetDpiForWindow(window));
    limits.ptMinTrackSize = {size.cx, size.cy};
    limits.ptMaxTrackSize = limits.ptMinTrackSize;
}

void move_to_suggested_place(HWND window, const RECT& place) {
    SetWindowPos(window, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

} // namespace

SIZE main_window_size(UINT dpi) {
    RECT rectangle = {0, 0, MulDiv(client_width, static_cast<int>(dpi), 96),
                      MulDiv(client_height, static_cast<int>(dpi), 96)};
    AdjustWindowRectExForDpi(&rectangle, main_window_style, FALSE, 0, dpi);
    return {rectangle.right - rectangle.left, rectangle.bottom - rectangle.top};
}

void create_main_window(HINSTANCE instance) {
    register_window_class(instance);
    const int screen_width = GetSystemMetrics(SM_CXSCREEN);
    const int screen_height = GetSystemMetrics(SM_CYSCREEN);
    const SIZE size = main_window_size(GetDpiForSystem());
    const int x = (screen_width - size.cx) / 2;
    const int y = (screen_height - size.cy) / 2;
    g_main_window = CreateWindowExW(0, window_class_name, window_title, main_window_style, x, y, size.cx,
                                    size.cy, nullptr, nullptr, instance, nullptr);
    ShowWindow(g_main_window, SW_SHOWNORMAL);
    UpdateWindow(g_main_window);
}

int run_message_loop() {
    MSG message = {};
    while (GetMessageW(&message, nullptr, 0, 0) != 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return static_cast<int>(message.wParam);
}

LRESULT CALLBACK wnd_proc(HWND window, UINT message, WPARAM w_param, LPARAM l_param) noexcept {
    switch (message) {
    case WM_DESTROY:
        PostQuitMessage(0);
        return 0;
    case WM_SIZE:
        fit_view_to_window(window);
        return 0;
    case WM_GETMINMAXINFO:
        pin_tracking_size(window, *reinterpret_cast<MINMAXINFO*>(l_param));
        return 0;
    case WM_DPICHANGED:
        move_to_suggested_place(window, *reinterpret_cast<const RECT*>(l_param));
        return 0;
    case WM_APP_POST_JSON: {
        const std::unique_ptr<const std::wstring> text(reinterpret_cast<const std::wstring*>(l_param));
        show_to_page(text.get());
        return 0;
    }
    default:
        return DefWindowProcW(window, message, w_param, l_param);
    }
}
