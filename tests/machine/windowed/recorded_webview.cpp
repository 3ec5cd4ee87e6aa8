#include "recorded_webview.h"

#include <doctest/doctest.h>

#include "text_forms.h"

// What the unused methods of the control do here: the program must not call them.
HRESULT not_implemented(const wchar_t* method) {
    FAIL_CHECK("called without need: " << utf8_from_wide(method));
    return E_NOTIMPL;
}

HRESULT RecordedSettings::put_IsStatusBarEnabled(BOOL enabled) {
    return note("put_IsStatusBarEnabled " + std::to_string(enabled));
}

HRESULT RecordedSettings::put_AreDevToolsEnabled(BOOL enabled) {
    return note("put_AreDevToolsEnabled " + std::to_string(enabled));
}

HRESULT RecordedSettings::put_IsZoomControlEnabled(BOOL enabled) {
    return note("put_IsZoomControlEnabled " + std::to_string(enabled));
}

HRESULT RecordedView::get_Settings(ICoreWebView2Settings** value) {
    note("get_Settings");
    return has_settings ? hand_out<ICoreWebView2Settings>(value, settings) : E_FAIL;
}

HRESULT RecordedView::NavigateToString(LPCWSTR html) {
    page = html;
    return note("NavigateToString");
}

HRESULT RecordedView::add_NavigationCompleted(ICoreWebView2NavigationCompletedEventHandler* handler,
                                              EventRegistrationToken* token) {
    CHECK(handler != nullptr);
    CHECK(token != nullptr);
    return note("add_NavigationCompleted");
}

HRESULT RecordedView::ExecuteScript(LPCWSTR script, ICoreWebView2ExecuteScriptCompletedHandler* handler) {
    CHECK(handler == nullptr);
    return note("ExecuteScript " + utf8_from_wide(script));
}

HRESULT RecordedView::PostWebMessageAsString(LPCWSTR text) {
    return note("PostWebMessageAsString " + utf8_from_wide(text));
}

HRESULT RecordedView::add_WebMessageReceived(ICoreWebView2WebMessageReceivedEventHandler* handler,
                                             EventRegistrationToken* token) {
    CHECK(handler != nullptr);
    CHECK(token != nullptr);
    return note("add_WebMessageReceived");
}

HRESULT RecordedController::QueryInterface(REFIID id, void** object) {
    CHECK((id == IID_ICoreWebView2Controller2));
    note("QueryInterface");
    *object = nullptr;
    if (!has_second_interface) {
        return E_NOINTERFACE;
    }
    AddRef();
    *object = static_cast<ICoreWebView2Controller2*>(this);
    return S_OK;
}

HRESULT RecordedController::put_Bounds(RECT bounds) {
    return note("put_Bounds " + std::to_string(bounds.left) + " " + std::to_string(bounds.top) + " " +
                std::to_string(bounds.right) + " " + std::to_string(bounds.bottom));
}

HRESULT RecordedController::Close() {
    return note("Close");
}

HRESULT RecordedController::get_CoreWebView2(ICoreWebView2** value) {
    note("get_CoreWebView2");
    *value = nullptr;
    return has_view ? hand_out<ICoreWebView2>(value, view) : E_FAIL;
}

HRESULT RecordedController::put_DefaultBackgroundColor(COREWEBVIEW2_COLOR color) {
    return note("put_DefaultBackgroundColor " + std::to_string(color.A) + " " + std::to_string(color.R) +
                " " + std::to_string(color.G) + " " + std::to_string(color.B));
}
