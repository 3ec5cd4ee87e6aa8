#pragma once

// What the rest of the program includes: the WebView2 interfaces in use, their
// ids (IID_...) and CreateCoreWebView2EnvironmentWithOptions, either ours or,
// with ORVANTA_WEBVIEW2_SDK set in CMake, Microsoft's. The names are the same.

#ifdef ORVANTA_WITH_WEBVIEW2_SDK
#include <windows.h>
#include <WebView2.h>
#else
#include "webview2/interfaces.h"
#include "webview2/loader.h"
#endif
