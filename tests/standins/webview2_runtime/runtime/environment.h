#pragma once

#include "com_object.h"
#include "webview2/interfaces.h"
#include "wire.h"

/// A started runtime.
class Environment final : public ComObject<ICoreWebView2Environment, Environment> {
  public:
    static constexpr const wchar_t* object_name = L"ICoreWebView2Environment";
    static bool answers(REFIID iid) { return iid == IID_ICoreWebView2Environment; }

    HRESULT STDMETHODCALLTYPE CreateCoreWebView2Controller(
        HWND parent, ICoreWebView2CreateCoreWebView2ControllerCompletedHandler* handler) override;
    HRESULT STDMETHODCALLTYPE
    CreateWebResourceResponse(IStream* /*content*/, int /*status*/, LPCWSTR /*reason*/, LPCWSTR /*headers*/,
                              ICoreWebView2WebResourceResponse** /*response*/) override;
    HRESULT STDMETHODCALLTYPE get_BrowserVersionString(LPWSTR* /*value*/) override;
    HRESULT STDMETHODCALLTYPE
    add_NewBrowserVersionAvailable(ICoreWebView2NewBrowserVersionAvailableEventHandler* /*handler*/,
                                   EventRegistrationToken* /*token*/) override;
    HRESULT STDMETHODCALLTYPE remove_NewBrowserVersionAvailable(EventRegistrationToken /*token*/) override;
};

/// Hands a message of the bridge to the controller that waits or lives. UI thread.
void handle_bridge_message(MessageReader& message);
