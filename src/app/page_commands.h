#pragma once

#include <string>

#include <windows.h>

#include "webview2/webview2.h"

/// WebView2's handler for messages from the page. Messages that are not strings are ignored. Always S_OK; an
/// exception ends the process.
HRESULT on_web_message(HWND window, ICoreWebView2* sender, ICoreWebView2WebMessageReceivedEventArgs* args);

/// Carries out one message of the page (UTF-8): starts a run, opens a store page or closes the window, and
/// answers where the page expects it. Unknown actions are ignored. Throws std::invalid_argument or
/// std::out_of_range for an index that is no 32-bit number. For the window's thread only.
void carry_out_page_message(const std::string& json);
