#include "page_input.h"

#include <cstdint>

#include <windowsx.h>

#include "bridge_link.h"

namespace {

// The bridge's half of these lists is bridge/input.mjs.
enum class MouseEvent : std::uint8_t { move, down, up, wheel, leave };
enum class KeyEvent : std::uint8_t { down, up, character };
enum class Button : std::uint8_t { none, left, middle, right };

constexpr LPARAM key_is_repeated = 1L << 30;

/// Alt 1, Control 2, Shift 8, as Chromium counts them.
int modifiers() {
    return (GetKeyState(VK_MENU) < 0 ? 1 : 0) | (GetKeyState(VK_CONTROL) < 0 ? 2 : 0) |
           (GetKeyState(VK_SHIFT) < 0 ? 8 : 0);
}

/// Left 1, right 2, middle 4, as Chromium counts them.
int pressed_buttons(WPARAM wparam) {
    return ((wparam & MK_LBUTTON) != 0 ? 1 : 0) | ((wparam & MK_RBUTTON) != 0 ? 2 : 0) |
           ((wparam & MK_MBUTTON) != 0 ? 4 : 0);
}

void send_mouse(MouseEvent event, POINT place, Button button, int buttons, int click_count, int wheel) {
    send_to_bridge(MessageWriter(FromProgram::mouse)
                       .number(static_cast<int>(event))
                       .number(place.x)
                       .number(place.y)
                       .number(static_cast<int>(button))
                       .number(buttons)
                       .number(click_count)
                       .number(modifiers())
                       .number(wheel));
}

void send_key(KeyEvent event, WPARAM key, LPARAM lparam) {
    send_to_bridge(MessageWriter(FromProgram::key)
                       .number(static_cast<int>(event))
                       .number(static_cast<std::int64_t>(key))
                       .number(modifiers())
                       .number((lparam & key_is_repeated) != 0 ? 1 : 0));
}

void press(HWND window, POINT place, Button button, WPARAM wparam, int click_count) {
    SetFocus(window);
    SetCapture(window); // the button may come up outside
    send_mouse(MouseEvent::down, place, button, pressed_buttons(wparam), click_count, 0);
}

void let_go(POINT place, Button button, WPARAM wparam) {
    if (pressed_buttons(wparam) == 0) {
        ReleaseCapture();
    }
    send_mouse(MouseEvent::up, place, button, pressed_buttons(wparam), 1, 0);
}

void move(HWND window, POINT place, WPARAM wparam) {
    TRACKMOUSEEVENT track = {};
    track.cbSize = sizeof(track);
    track.dwFlags = TME_LEAVE;
    track.hwndTrack = window;
    TrackMouseEvent(&track); // without it the page only misses that the mouse has left
    send_mouse(MouseEvent::move, place, Button::none, pressed_buttons(wparam), 0, 0);
}

bool pass_mouse_on(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    POINT place = {GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)};
    switch (message) {
    case WM_MOUSEMOVE:
        move(window, place, wparam);
        return true;
    case WM_MOUSELEAVE:
        send_mouse(MouseEvent::leave, {-1, -1}, Button::none, 0, 0, 0);
        return true;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
        press(window, place, Button::left, wparam, message == WM_LBUTTONDBLCLK ? 2 : 1);
        return true;
    case WM_LBUTTONUP:
        let_go(place, Button::left, wparam);
        return true;
    case WM_MBUTTONDOWN:
    case WM_MBUTTONDBLCLK:
        press(window, place, Button::middle, wparam, 1);
        return true;
    case WM_MBUTTONUP:
        let_go(place, Button::middle, wparam);
        return true;
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK:
        press(window, place, Button::right, wparam, 1);
        return true;
    case WM_RBUTTONUP:
        let_go(place, Button::right, wparam);
        return true;
    case WM_MOUSEWHEEL:
        ScreenToClient(window, &place); // this one comes in screen coordinates
        send_mouse(MouseEvent::wheel, place, Button::none, pressed_buttons(wparam), 0,
                   GET_WHEEL_DELTA_WPARAM(wparam));
        return true;
    default:
        return false;
    }
}

} // namespace

bool pass_input_on(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
    case WM_KEYDOWN:
        send_key(KeyEvent::down, wparam, lparam);
        return true;
    case WM_KEYUP:
        send_key(KeyEvent::up, wparam, lparam);
        return true;
    case WM_CHAR:
        send_key(KeyEvent::character, wparam, lparam);
        return true;
    default:
        return pass_mouse_on(window, message, wparam, lparam);
    }
}
