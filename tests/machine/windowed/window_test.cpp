#include "app/window.h"

#include <doctest/doctest.h>
#include <string>

#include "app/webview_host.h"
#include "readable.h"
#include "runs/progress.h"

namespace {

std::wstring title_of(HWND window) {
    wchar_t text[256] = {};
    return {text, static_cast<size_t>(GetWindowTextW(window, text, 256))};
}

SIZE size_of(const RECT& rectangle) {
    return {rectangle.right - rectangle.left, rectangle.bottom - rectangle.top};
}

RECT place_of(HWND window) {
    RECT place = {};
    GetWindowRect(window, &place);
    return place;
}

/// The installer window, destroyed at the end of the test.
struct ShownWindow {
    ShownWindow() { create_main_window(GetModuleHandleW(nullptr)); }
    ShownWindow(const ShownWindow&) = delete;
    ShownWindow& operator=(const ShownWindow&) = delete;
    ~ShownWindow() {
        DestroyWindow(g_main_window);
        g_main_window = nullptr;
    }
};

} // namespace

TEST_CASE("the window shows its title and a fixed client area in the middle of the screen") {
    const ShownWindow shown;
    HWND window = g_main_window;
    REQUIRE(window != nullptr);
    CHECK(FindWindowW(L"VeyraInstallerWnd", L"Veyra Security Suite \u2014 Setup") == window);
    CHECK(title_of(window) == L"Veyra Security Suite \u2014 Setup");
    CHECK((GetWindowLongPtrW(window, GWL_STYLE) & ~(WS_VISIBLE | WS_CLIPSIBLINGS)) == 0x00CA0000);
    CHECK((GetWindowLongPtrW(window, GWL_EXSTYLE) & ~WS_EX_WINDOWEDGE) == 0);
    CHECK(IsWindowVisible(window) != FALSE);
    CHECK(GetMenu(window) == nullptr);
    CHECK(GetParent(window) == nullptr);

    RECT client = {};
    GetClientRect(window, &client);
    CHECK(client.right == MulDiv(920, static_cast<int>(GetDpiForSystem()), 96));
    CHECK(client.bottom == MulDiv(640, static_cast<int>(GetDpiForSystem()), 96));
    const RECT place = place_of(window);
    CHECK(place.left == (GetSystemMetrics(SM_CXSCREEN) - size_of(place).cx) / 2);
    CHECK(place.top == (GetSystemMetrics(SM_CYSCREEN) - size_of(place).cy) / 2);
}

TEST_CASE("the window class has the page background and no icon of the program") {
    const ShownWindow shown;
    WNDCLASSEXW window_class = {};
    window_class.cbSize = sizeof(window_class);
    REQUIRE(GetClassInfoExW(GetModuleHandleW(nullptr), L"VeyraInstallerWnd", &window_class) != FALSE);
    CHECK(window_class.style == 0);
    CHECK((window_class.lpfnWndProc == wnd_proc));
    CHECK(window_class.cbClsExtra == 0);
    CHECK(window_class.cbWndExtra == 0);
    CHECK(window_class.hIcon == nullptr);
    CHECK(window_class.hIconSm == nullptr);
    CHECK(window_class.hCursor == LoadCursorW(nullptr, IDC_ARROW));
    CHECK(window_class.lpszMenuName == nullptr);
    LOGBRUSH brush = {};
    REQUIRE(GetObjectW(window_class.hbrBackground, sizeof(brush), &brush) == sizeof(brush));
    CHECK(brush.lbStyle == BS_SOLID);
    CHECK(brush.lbColor == RGB(8, 12, 20));
}

TEST_CASE("the window can be neither resized nor maximised") {
    const ShownWindow shown;
    const SIZE size = main_window_size(GetDpiForWindow(g_main_window));
    MINMAXINFO limits = {};
    limits.ptMinTrackSize = {1, 2};
    limits.ptMaxTrackSize = {30000, 20000};
    CHECK(SendMessageW(g_main_window, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits)) == 0);
    CHECK(limits.ptMinTrackSize.x == size.cx);
    CHECK(limits.ptMinTrackSize.y == size.cy);
    CHECK(limits.ptMaxTrackSize.x == size.cx);
    CHECK(limits.ptMaxTrackSize.y == size.cy);
    CHECK((GetWindowLongPtrW(g_main_window, GWL_STYLE) & (WS_THICKFRAME | WS_MAXIMIZEBOX)) == 0);
}

TEST_CASE("a change of DPI moves the window to the suggested place") {
    const ShownWindow shown;
    RECT suggested = {20, 30, 20 + main_window_size(96).cx, 30 + main_window_size(96).cy};
    CHECK(SendMessageW(g_main_window, WM_DPICHANGED, MAKEWPARAM(96, 96),
                       reinterpret_cast<LPARAM>(&suggested)) == 0);
    const RECT place = place_of(g_main_window);
    CHECK(place.left == 20);
    CHECK(place.top == 30);
    CHECK(size_of(place).cx == size_of(suggested).cx);
    CHECK(size_of(place).cy == size_of(suggested).cy);
}

TEST_CASE("texts for the page are dropped while there is no view") {
    const ShownWindow shown;
    CHECK_FALSE(g_webview);
    auto* const text = new std::wstring(L"{}");
    CHECK(SendMessageW(g_main_window, 0x8001, 0, reinterpret_cast<LPARAM>(text)) == 0);
    CHECK(SendMessageW(g_main_window, 0x8001, 0, 0) == 0);
    CHECK(SendMessageW(g_main_window, WM_SIZE, SIZE_RESTORED, MAKELPARAM(920, 640)) == 0);
}

TEST_CASE("closing the window destroys it and ends the message loop with 0") {
    create_main_window(GetModuleHandleW(nullptr));
    HWND window = g_main_window;
    PostMessageW(window, WM_CLOSE, 0, 0);
    CHECK(run_message_loop() == 0);
    CHECK(IsWindow(window) == FALSE);
}

TEST_CASE("the message loop returns what the quit message carries") {
    PostQuitMessage(7);
    CHECK(run_message_loop() == 7);
}
