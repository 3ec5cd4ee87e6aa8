#pragma once

#include <windows.h>
#include <eventtoken.h>
#include <unknwn.h>

// NOLINTBEGIN(readability-identifier-naming): the names of the published interface.

/// A colour with alpha, passed by value as four bytes in this order. Alpha is
/// 255 (opaque) or 0; anything between is refused by the control.
struct COREWEBVIEW2_COLOR {
    BYTE A;
    BYTE R;
    BYTE G;
    BYTE B;
};

// Enumerations and interfaces that only occur in members that we never call:
// the size of the parameter is all that matters.
enum COREWEBVIEW2_CAPTURE_PREVIEW_IMAGE_FORMAT : int;
enum COREWEBVIEW2_MOVE_FOCUS_REASON : int;
enum COREWEBVIEW2_WEB_ERROR_STATUS : int;
enum COREWEBVIEW2_WEB_RESOURCE_CONTEXT : int;

struct ICoreWebView2AcceleratorKeyPressedEventHandler;
struct ICoreWebView2AddScriptToExecuteOnDocumentCreatedCompletedHandler;
struct ICoreWebView2CallDevToolsProtocolMethodCompletedHandler;
struct ICoreWebView2CapturePreviewCompletedHandler;
struct ICoreWebView2ContainsFullScreenElementChangedEventHandler;
struct ICoreWebView2ContentLoadingEventHandler;
struct ICoreWebView2DevToolsProtocolEventReceiver;
struct ICoreWebView2DocumentTitleChangedEventHandler;
struct ICoreWebView2EnvironmentOptions;
struct ICoreWebView2FocusChangedEventHandler;
struct ICoreWebView2HistoryChangedEventHandler;
struct ICoreWebView2MoveFocusRequestedEventHandler;
struct ICoreWebView2NavigationStartingEventHandler;
struct ICoreWebView2NewBrowserVersionAvailableEventHandler;
struct ICoreWebView2NewWindowRequestedEventHandler;
struct ICoreWebView2PermissionRequestedEventHandler;
struct ICoreWebView2ProcessFailedEventHandler;
struct ICoreWebView2ScriptDialogOpeningEventHandler;
struct ICoreWebView2SourceChangedEventHandler;
struct ICoreWebView2WebResourceRequestedEventHandler;
struct ICoreWebView2WebResourceResponse;
struct ICoreWebView2WindowCloseRequestedEventHandler;
struct ICoreWebView2ZoomFactorChangedEventHandler;

// Ours, declared in the neighbouring headers.
struct ICoreWebView2;
struct ICoreWebView2Controller;
struct ICoreWebView2CreateCoreWebView2ControllerCompletedHandler;
struct ICoreWebView2ExecuteScriptCompletedHandler;
struct ICoreWebView2NavigationCompletedEventHandler;
struct ICoreWebView2Settings;
struct ICoreWebView2WebMessageReceivedEventHandler;

// NOLINTEND(readability-identifier-naming)
