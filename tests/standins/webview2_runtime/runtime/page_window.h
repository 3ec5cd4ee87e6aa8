#pragma once

#include <functional>
#include <string_view>

#include <windows.h>

#include "frame_image.h"

/// The child window that fills the view's bounds: shows the page's frames and passes the mouse and the
/// keyboard on to it. UI thread only.
class PageWindow {
  public:
    /// `on_destroyed` is called when the window goes, with its parent or by our own hand.
    PageWindow(HWND parent, std::function<void()> on_destroyed);
    ~PageWindow();
    PageWindow(const PageWindow&) = delete;
    PageWindow& operator=(const PageWindow&) = delete;

    [[nodiscard]] bool is_alive() const { return window_ != nullptr; }
    [[nodiscard]] UINT dpi() const;
    void place(const RECT& bounds);
    void set_background(COLORREF color);

    /// The mouse pointer that the page wants: 0 arrow, 1 hand, 2 text.
    void set_cursor(int kind);

    /// Shows the next picture of the page, a PNG file. What cannot be decoded is left out.
    void show_frame(std::string_view png);

  private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept;
    LRESULT on_message(UINT message, WPARAM wparam, LPARAM lparam);
    void paint();

    HWND window_ = nullptr;
    std::function<void()> on_destroyed_;
    HCURSOR cursor_ = LoadCursorW(nullptr, IDC_ARROW);
    COLORREF background_ = RGB(255, 255, 255);
    FrameImage frame_;
};
