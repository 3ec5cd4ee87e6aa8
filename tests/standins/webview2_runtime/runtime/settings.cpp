#include "settings.h"

#include "ui_thread.h"

namespace {

HRESULT record_setting(const wchar_t* method, BOOL value) {
    if (!is_on_ui_thread(method)) {
        return RPC_E_WRONG_THREAD;
    }
    record_call(method, value == FALSE ? L"FALSE" : L"TRUE");
    return S_OK;
}

} // namespace

HRESULT Settings::put_IsStatusBarEnabled(BOOL value) {
    return record_setting(L"ICoreWebView2Settings::put_IsStatusBarEnabled", value);
}

HRESULT Settings::put_AreDevToolsEnabled(BOOL value) {
    return record_setting(L"ICoreWebView2Settings::put_AreDevToolsEnabled", value);
}

HRESULT Settings::put_IsZoomControlEnabled(BOOL value) {
    return record_setting(L"ICoreWebView2Settings::put_IsZoomControlEnabled", value);
}
