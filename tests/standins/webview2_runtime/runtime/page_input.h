#pragma once

#include <windows.h>

/// Sends what the mouse or the keyboard did in the page's window to the bridge. False when the message is
/// none of these and somebody else has to look at it.
bool pass_input_on(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
