#include "app/window.h"

#include <doctest/doctest.h>
#include <string>
#include <vector>

#include "app/webview_host.h"
#include "before_each_case.h"
#include "intercepted_call.h"
#include "readable.h"
#include "shown_window.h"

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

// What the stand-ins below were asked for, on the test's thread.
std::wstring g_icon_name;

struct Placing {
    HWND window;
    HWND after;
    RECT place;
    UINT flags;
};
std::vector<Placing> g_placings;
const BeforeEachCase start_anew([] {
    g_icon_name.clear();
    g_placings.clear();
});

HICON WINAPI noted_icon(HINSTANCE instance, LPCWSTR name) {
    CHECK(instance == GetModuleHandleW(nullptr));
    REQUIRE_FALSE(IS_INTRESOURCE(name));
    g_icon_name = name;
    return real_function<decltype(LoadIconW)>("LoadIconW")(instance, name);
}

BOOL WINAPI noted_placing(HWND window, HWND after, int x, int y, int width, int height, UINT flags) {
    g_placings.push_back({window, after, {x, y, x + width, y + height}, flags});
    return real_function<decltype(SetWindowPos)>("SetWindowPos")(window, after, x, y, width, height, flags);
}

UINT WINAPI other_dpi(HWND window) {
    CHECK(window == g_main_window);
    return 144;
}

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

// Fixed behaviour: the members of the class are prescribed, the icon that is not found included.
TEST_CASE("the window class has the page background and an icon name that no resource has") {
    const InterceptedCall icon("LoadIconW", noted_icon);
    const ShownWindow shown;
    CHECK(g_icon_name == L"IDI_APPICON");
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

TEST_CASE("an empty window is painted in the page background to its edges") {
    const ShownWindow shown;
    RECT client = {};
    GetClientRect(g_main_window, &client);
    HDC context = GetDC(g_main_window);
    for (const POINT& point : {POINT{0, 0}, POINT{client.right / 2, client.bottom / 2},
                               POINT{client.right - 1, client.bottom - 1}}) {
        CHECK(GetPixel(context, point.x, point.y) == RGB(8, 12, 20));
    }
    ReleaseDC(g_main_window, context);
}

TEST_CASE("the window can be neither resized nor maximised at any DPI of its own") {
    const ShownWindow shown;
    CHECK((GetWindowLongPtrW(g_main_window, GWL_STYLE) & (WS_THICKFRAME | WS_MAXIMIZEBOX)) == 0);
    const auto check_limits = [](const SIZE& size) {
        MINMAXINFO limits = {};
        limits.ptMinTrackSize = {1, 2};
        limits.ptMaxTrackSize = {30000, 20000};
        CHECK(SendMessageW(g_main_window, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits)) == 0);
        CHECK(limits.ptMinTrackSize.x == size.cx);
        CHECK(limits.ptMinTrackSize.y == size.cy);
        CHECK(limits.ptMaxTrackSize.x == size.cx);
        CHECK(limits.ptMaxTrackSize.y == size.cy);
    };
    check_limits(main_window_size(GetDpiForWindow(g_main_window)));
    // On a screen of another DPI the size of that one counts, not the system's.
    const InterceptedCall dpi("GetDpiForWindow", other_dpi);
    const SIZE larger = main_window_size(144);
    CHECK(larger.cx >= 1380);
    CHECK(larger.cy > 960);
    check_limits(larger);
}

TEST_CASE("a change of DPI moves the window to the suggested place") {
    const ShownWindow shown;
    RECT suggested = {20, 30, 20 + main_window_size(144).cx, 30 + main_window_size(144).cy};
    const InterceptedCall dpi("GetDpiForWindow", other_dpi);
    const InterceptedCall placing("SetWindowPos", noted_placing);
    CHECK(SendMessageW(g_main_window, WM_DPICHANGED, MAKEWPARAM(144, 144),
                       reinterpret_cast<LPARAM>(&suggested)) == 0);
    REQUIRE(g_placings.size() == 1);
    CHECK(g_placings[0].window == g_main_window);
    CHECK(g_placings[0].after == nullptr);
    CHECK(EqualRect(&g_placings[0].place, &suggested) != FALSE);
    CHECK(g_placings[0].flags == (SWP_NOZORDER | SWP_NOACTIVATE));
    const RECT place = place_of(g_main_window);
    CHECK(EqualRect(&place, &suggested) != FALSE);
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
