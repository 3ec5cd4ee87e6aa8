#pragma once

#include <optional>
#include <string>

#include "com_object.h"
#include "webview2/interfaces.h"

/// A message from the page: a string, or anything else.
class WebMessageArgs final : public ComObject<ICoreWebView2WebMessageReceivedEventArgs, WebMessageArgs> {
  public:
    static constexpr const wchar_t* object_name = L"ICoreWebView2WebMessageReceivedEventArgs";
    static bool answers(REFIID iid) { return iid == IID_ICoreWebView2WebMessageReceivedEventArgs; }

    /// Nothing when the page posted something that is not a string.
    explicit WebMessageArgs(std::optional<std::wstring> text) : text_(std::move(text)) {}

    HRESULT STDMETHODCALLTYPE get_Source(LPWSTR* /*value*/) override;
    HRESULT STDMETHODCALLTYPE get_WebMessageAsJson(LPWSTR* /*value*/) override;
    HRESULT STDMETHODCALLTYPE TryGetWebMessageAsString(LPWSTR* text) override;

  private:
    std::optional<std::wstring> text_;
};

/// The end of a navigation; the installer asks nothing of it.
class NavigationCompletedArgs final
    : public ComObject<ICoreWebView2NavigationCompletedEventArgs, NavigationCompletedArgs> {
  public:
    static constexpr const wchar_t* object_name = L"ICoreWebView2NavigationCompletedEventArgs";
    static bool answers(REFIID iid) { return iid == IID_ICoreWebView2NavigationCompletedEventArgs; }

    HRESULT STDMETHODCALLTYPE get_IsSuccess(BOOL* /*value*/) override;
    HRESULT STDMETHODCALLTYPE get_WebErrorStatus(COREWEBVIEW2_WEB_ERROR_STATUS* /*value*/) override;
    HRESULT STDMETHODCALLTYPE get_NavigationId(UINT64* /*value*/) override;
};
