#include "page_window.h"

#include <string>
#include <utility>

#include "journal.h"
#include "page_input.h"
#include "ui_thread.h"

namespace {

constexpr const wchar_t* window_class = L"OrvantaWebViewStandIn";

void register_window_class(WNDPROC procedure) {
    WNDCLASSEXW description = {};
    description.cbSize = sizeof(description);
    description.style = CS_DBLCLKS;
    description.lpfnWndProc = procedure;
    description.hInstance = runtime_module();
    description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    description.lpszClassName = window_class;
    RegisterClassExW(&description); // a second time fails and changes nothing
}

} // namespace

PageWindow::PageWindow(HWND parent, std::function<void()> on_destroyed)
    : on_destroyed_(std::move(on_destroyed)) {
    register_window_class(procedure);
    window_ = CreateWindowExW(0, window_class, L"", WS_CHILD | WS_VISIBLE, 0, 0, 0, 0, parent, nullptr,
                              runtime_module(), this);
    if (window_ == nullptr) {
        record_trouble(L"the page's window could not be made: error " + std::to_wstring(GetLastError()));
        return;
    }
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

PageWindow::~PageWindow() {
    if (window_ != nullptr) {
        DestroyWindow(window_);
    }
}

UINT PageWindow::dpi() const {
    const UINT dpi = GetDpiForWindow(window_);
    return dpi == 0 ? USER_DEFAULT_SCREEN_DPI : dpi;
}

void PageWindow::place(const RECT& bounds) {
    SetWindowPos(window_, nullptr, bounds.left, bounds.top, bounds.right - bounds.left,
                 bounds.bottom - bounds.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

void PageWindow::set_background(COLORREF color) {
    background_ = color;
    InvalidateRect(window_, nullptr, FALSE);
}

void PageWindow::set_cursor(int kind) {
    cursor_ = LoadCursorW(nullptr, kind == 1 ? IDC_HAND : kind == 2 ? IDC_IBEAM : IDC_ARROW);
    SetCursor(cursor_); // the mouse is over the page, or it would not have asked
}

void PageWindow::show_frame(std::string_view png) {
    FrameImage frame = decode_png(png);
    if (frame.width == 0) {
        record_note(L"a frame could not be decoded");
        return;
    }
    frame_ = std::move(frame);
    InvalidateRect(window_, nullptr, FALSE);
    UpdateWindow(window_);
}

void PageWindow::paint() {
    PAINTSTRUCT paint = {};
    HDC context = BeginPaint(window_, &paint);
    RECT area = {};
    GetClientRect(window_, &area);
    if (frame_.width == 0) {
        HBRUSH brush = CreateSolidBrush(background_);
        FillRect(context, &area, brush);
        DeleteObject(brush);
    } else {
        BITMAPINFO info = {};
        info.bmiHeader.biSize = sizeof(info.bmiHeader);
        info.bmiHeader.biWidth = frame_.width;
        info.bmiHeader.biHeight = -frame_.height; // the first row is the top one
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        info.bmiHeader.biCompression = BI_RGB;
        StretchDIBits(context, 0, 0, area.right, area.bottom, 0, 0, frame_.width, frame_.height,
                      frame_.pixels.data(), &info, DIB_RGB_COLORS, SRCCOPY);
    }
    EndPaint(window_, &paint);
}

LRESULT PageWindow::on_message(UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
    case WM_PAINT:
        paint();
        return 0;
    case WM_ERASEBKGND:
        return 1; // painted as a whole
    case WM_SETCURSOR:
        if (LOWORD(lparam) != HTCLIENT) {
            return DefWindowProcW(window_, message, wparam, lparam);
        }
        SetCursor(cursor_);
        return TRUE;
    case WM_NCDESTROY: {
        HWND window = std::exchange(window_, nullptr);
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        on_destroyed_();
        return DefWindowProcW(window, message, wparam, lparam);
    }
    default:
        return pass_input_on(window_, message, wparam, lparam)
                   ? 0
                   : DefWindowProcW(window_, message, wparam, lparam);
    }
}

LRESULT CALLBACK PageWindow::procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
    auto* const self = reinterpret_cast<PageWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    return self == nullptr ? DefWindowProcW(window, message, wparam, lparam)
                           : self->on_message(message, wparam, lparam);
}
