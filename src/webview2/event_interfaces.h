#pragma once

#include "webview2/environment_interface.h"
#include "webview2/interface_types.h"

// NOLINTBEGIN(readability-identifier-naming): the names of the published interface.

/// A message from the page, valid during the handler's call. TryGetWebMessageAsString gives a text to
/// be freed with CoTaskMemFree, or E_INVALIDARG when the page posted anything but a string.
struct ICoreWebView2WebMessageReceivedEventArgs : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE get_Source(LPWSTR* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_WebMessageAsJson(LPWSTR* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE TryGetWebMessageAsString(LPWSTR* text) = 0;
};
inline constexpr IID IID_ICoreWebView2WebMessageReceivedEventArgs = {
    0x0f99a40c, 0xe962, 0x4207, {0x9e, 0x92, 0xe3, 0xd5, 0x42, 0xef, 0xf8, 0x49}};

/// How a navigation ended, valid during the handler's call.
struct ICoreWebView2NavigationCompletedEventArgs : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE get_IsSuccess(BOOL* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_WebErrorStatus(COREWEBVIEW2_WEB_ERROR_STATUS* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_NavigationId(UINT64* value) = 0;
};
inline constexpr IID IID_ICoreWebView2NavigationCompletedEventArgs = {
    0x30d68b7d, 0x20d9, 0x4752, {0xa9, 0xca, 0xec, 0x84, 0x48, 0xfb, 0xb5, 0xc1}};

// The handlers are implemented by the program. The runtime asks each of them for its own id, keeps a
// reference beyond the call, and calls Invoke on the thread that created the environment.

struct ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE Invoke(HRESULT result, ICoreWebView2Environment* environment) = 0;
};
inline constexpr IID IID_ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler = {
    0x4e8a3389, 0xc9d8, 0x4bd2, {0xb6, 0xb5, 0x12, 0x4f, 0xee, 0x6c, 0xc1, 0x4d}};

struct ICoreWebView2CreateCoreWebView2ControllerCompletedHandler : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE Invoke(HRESULT result, ICoreWebView2Controller* controller) = 0;
};
inline constexpr IID IID_ICoreWebView2CreateCoreWebView2ControllerCompletedHandler = {
    0x6c4819f3, 0xc9b7, 0x4260, {0x81, 0x27, 0xc9, 0xf5, 0xbd, 0xe7, 0xf6, 0x8c}};

struct ICoreWebView2WebMessageReceivedEventHandler : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE Invoke(ICoreWebView2* sender,
                                             ICoreWebView2WebMessageReceivedEventArgs* args) = 0;
};
inline constexpr IID IID_ICoreWebView2WebMessageReceivedEventHandler = {
    0x57213f19, 0x00e6, 0x49fa, {0x8e, 0x07, 0x89, 0x8e, 0xa0, 0x1e, 0xcb, 0xd2}};

struct ICoreWebView2NavigationCompletedEventHandler : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE Invoke(ICoreWebView2* sender,
                                             ICoreWebView2NavigationCompletedEventArgs* args) = 0;
};
inline constexpr IID IID_ICoreWebView2NavigationCompletedEventHandler = {
    0xd33a35bf, 0x1c49, 0x4f98, {0x93, 0xab, 0x00, 0x6e, 0x05, 0x33, 0xfe, 0x1c}};

struct ICoreWebView2ExecuteScriptCompletedHandler : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE Invoke(HRESULT result, LPCWSTR result_json) = 0;
};
inline constexpr IID IID_ICoreWebView2ExecuteScriptCompletedHandler = {
    0x49511172, 0xcc67, 0x4bca, {0x99, 0x23, 0x13, 0x71, 0x12, 0xf4, 0xc4, 0xcc}};

// NOLINTEND(readability-identifier-naming)
