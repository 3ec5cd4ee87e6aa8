#include "event_args.h"

#include <cstring>

#include <objbase.h>

#include "ui_thread.h"

HRESULT WebMessageArgs::get_Source(LPWSTR* /*value*/) {
    return not_implemented(L"ICoreWebView2WebMessageReceivedEventArgs::get_Source");
}

HRESULT WebMessageArgs::get_WebMessageAsJson(LPWSTR* /*value*/) {
    return not_implemented(L"ICoreWebView2WebMessageReceivedEventArgs::get_WebMessageAsJson");
}

HRESULT WebMessageArgs::TryGetWebMessageAsString(LPWSTR* text) {
    if (!is_on_ui_thread(L"ICoreWebView2WebMessageReceivedEventArgs::TryGetWebMessageAsString")) {
        return RPC_E_WRONG_THREAD;
    }
    if (text == nullptr) {
        return E_POINTER;
    }
    *text = nullptr;
    if (!text_) {
        return E_INVALIDARG;
    }
    const std::size_t size_bytes = (text_->size() + 1) * sizeof(wchar_t);
    *text = static_cast<LPWSTR>(CoTaskMemAlloc(size_bytes));
    if (*text == nullptr) {
        return E_OUTOFMEMORY;
    }
    std::memcpy(*text, text_->c_str(), size_bytes);
    return S_OK;
}

HRESULT NavigationCompletedArgs::get_IsSuccess(BOOL* /*value*/) {
    return not_implemented(L"ICoreWebView2NavigationCompletedEventArgs::get_IsSuccess");
}

HRESULT NavigationCompletedArgs::get_WebErrorStatus(COREWEBVIEW2_WEB_ERROR_STATUS* /*value*/) {
    return not_implemented(L"ICoreWebView2NavigationCompletedEventArgs::get_WebErrorStatus");
}

HRESULT NavigationCompletedArgs::get_NavigationId(UINT64* /*value*/) {
    return not_implemented(L"ICoreWebView2NavigationCompletedEventArgs::get_NavigationId");
}
