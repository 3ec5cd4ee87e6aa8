#pragma once

#include "webview2/environment_interface.h"
#include "webview2/event_interfaces.h"

// NOLINTBEGIN(readability-identifier-naming): Microsoft's signature, to the letter.

/// Starts a WebView2 environment: Microsoft's function, as our own loader. Null or empty folder: the
/// stable runtime installed on this machine, or else for this user. The machine's policies are obeyed;
/// environment variables and the user's policies are not looked at: more ways than the one registration to
/// choose the DLL of an elevated process are not needed. Without a runtime:
/// HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND); null handler: E_POINTER. After S_OK the handler is called on
/// this thread, inside this call or later from the message loop; after a failure never. The thread must be a
/// single-threaded apartment. Does not throw.
extern "C" HRESULT STDAPICALLTYPE CreateCoreWebView2EnvironmentWithOptions(
    PCWSTR browserExecutableFolder, PCWSTR userDataFolder,
    ICoreWebView2EnvironmentOptions* environmentOptions,
    ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler* environmentCreatedHandler);

// NOLINTEND(readability-identifier-naming)
