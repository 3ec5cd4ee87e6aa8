#pragma once

#include <windows.h>

/// Size of the client area in device-independent pixels; the page is laid out for it.
inline constexpr int client_width = 920;
inline constexpr int client_height = 640;

/// A title bar with close and minimise buttons; neither a sizing border nor a maximise button.
inline constexpr DWORD main_window_style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX;

/// Size of the whole window whose client area has the fixed size at a DPI.
SIZE main_window_size(UINT dpi);

/// Makes the installer window in the middle of the primary screen, shows it and stores it in `g_main_window`.
void create_main_window(HINSTANCE instance);

/// Pumps messages until the window has been destroyed. Returns the exit code.
int run_message_loop();

/// The installer window's procedure. An exception ends the process.
LRESULT CALLBACK wnd_proc(HWND window, UINT message, WPARAM w_param, LPARAM l_param) noexcept;
