#pragma once

#include <string>

#include <windows.h>

/// Carries one text for the page to the window's thread: wParam is 0, lParam points to a std::wstring on the
/// heap that belongs to the receiver from the moment of posting.
// NOLINTNEXTLINE(readability-identifier-naming): named like every window message.
inline constexpr UINT WM_APP_POST_JSON = WM_APP + 1;

/// The installer window. Null until it is created, and for good in the windowless modes. Written once by the
/// window's thread before any worker exists.
extern HWND g_main_window;

/// Sends one JSON text (UTF-8) to the page, from any thread. Texts of one thread arrive in their order.
/// Without a window the text is dropped, as it is when the window has gone.
void post_to_page(const std::string& json);
