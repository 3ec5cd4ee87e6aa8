#pragma once

#include <string>

#include <windows.h>

#include "common/com_ptr.h"
#include "webview2/webview2.h"

/// Whether the page opens on its removal screen. Written before the window is made.
extern bool g_uninstall_gui;

/// The control and the view in the installer window. Null until the control is ready, then the same until the
/// process ends. For the window's thread only.
extern ComPtr<ICoreWebView2Controller> g_controller;
extern ComPtr<ICoreWebView2> g_webview;

/// Starts WebView2 for the window; the rest happens in handlers on the same thread, which must pump messages.
/// Without a runtime the window stays empty. Needs COM as a single-threaded apartment.
void init_webview(HWND window);

/// The steps that follow, as WebView2 calls them on the window's thread. The status is not looked at: what
/// counts is the object, and without one the answer is E_FAIL.
HRESULT on_environment_created(HWND window, HRESULT status, ICoreWebView2Environment* environment);
HRESULT on_controller_created(HWND window, HRESULT status, ICoreWebView2Controller* controller);

/// Opens the removal screen after every completed navigation, not only the first and whether or not it
/// succeeded; registered only when `g_uninstall_gui` is set.
HRESULT on_navigation_completed(HWND window, ICoreWebView2* sender,
                                ICoreWebView2NavigationCompletedEventArgs* args);

/// Makes the view as large as the window's client area; nothing while there is no view.
void fit_view_to_window(HWND window);

/// Hands a JSON text to the page; dropped while there is no view. `text` may be null only then.
void show_to_page(const std::wstring* text);
