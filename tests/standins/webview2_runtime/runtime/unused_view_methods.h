#pragma once

#include "journal.h"
#include "webview2/interfaces.h"

/// Everything of ICoreWebView2 that the installer has no use for: recorded, and refused with
/// E_NOTIMPL.
struct UnusedViewMethods : public ICoreWebView2 {
    HRESULT STDMETHODCALLTYPE get_Source(LPWSTR* /*value*/) override {
        return not_implemented(L"ICoreWebView2::get_Source");
    }
    HRESULT STDMETHODCALLTYPE Navigate(LPCWSTR /*uri*/) override {
        return not_implemented(L"ICoreWebView2::Navigate");
    }
    HRESULT STDMETHODCALLTYPE add_NavigationStarting(ICoreWebView2NavigationStartingEventHandler* /*handler*/,
                                                     EventRegistrationToken* /*token*/) override {
        return not_implemented(L"ICoreWebView2::add_NavigationStarting");
    }
    HRESULT STDMETHODCALLTYPE remove_NavigationStarting(EventRegistrationToken /*token*/) override {
        return not_implemented(L"ICoreWebView2::remove_NavigationStarting");
    }
    HRESULT STDMETHODCALLTYPE add_ContentLoading(ICoreWebView2ContentLoadingEventHandler* /*handler*/,
                                                 EventRegistrationToken* /*token*/) override {
        return not_implemented(L"ICoreWebView2::add_ContentLoading");
    }
    HRESULT STDMETHODCALLTYPE remove_ContentLoading(EventRegistrationToken /*token*/) override {
        return not_implemented(L"ICoreWebView2::remove_ContentLoading");
    }
    HRESULT STDMETHODCALLTYPE add_SourceChanged(ICoreWebView2SourceChangedEventHandler* /*handler*/,
                                                EventRegistrationToken* /*token*/) override {
        return not_implemented(L"ICoreWebView2::add_SourceChanged");
    }
    HRESULT STDMETHODCALLTYPE remove_SourceChanged(EventRegistrationToken /*token*/) override {
        return not_implemented(L"ICoreWebView2::remove_SourceChanged");
    }
    HRESULT STDMETHODCALLTYPE add_HistoryChanged(ICoreWebView2HistoryChangedEventHandler* /*handler*/,
                                                 EventRegistrationToken* /*token*/) override {
        return not_implemented(L"ICoreWebView2::add_HistoryChanged");
    }
    HRESULT STDMETHODCALLTYPE remove_HistoryChanged(EventRegistrationToken /*token*/) override {
        return not_implemented(L"ICoreWebView2::remove_HistoryChanged");
    }
    HRESULT STDMETHODCALLTYPE remove_NavigationCompleted(EventRegistrationToken /*token*/) override {
        return not_implemented(L"ICoreWebView2::remove_NavigationCompleted");
    }
    HRESULT STDMETHODCALLTYPE
    add_FrameNavigationStarting(ICoreWebView2NavigationStartingEventHandler* /*handler*/,
                                EventRegistrationToken* /*token*/) override {
        return not_implemented(L"ICoreWebView2::add_FrameNavigationStarting");
    }
    HRESULT STDMETHODCALLTYPE remove_FrameNavigationStarting(EventRegistrationToken /*token*/) override {
        return not_implemented(L"ICoreWebView2::remove_FrameNavigationStarting");
    }
    HRESULT STDMETHODCALLTYPE
    add_FrameNavigationCompleted(ICoreWebView2NavigationCompletedEventHandler* /*handler*/,
                                 EventRegistrationToken* /*token*/) override {
        return not_implemented(L"ICoreWebView2::add_FrameNavigationCompleted");
    }
    HRESULT STDMETHODCALLTYPE remove_FrameNavigationCompleted(EventRegistrationToken /*token*/) override {
        return not_implemented(L"ICoreWebView2::remove_FrameNavigationCompleted");
    }
    HRESULT STDMETHODCALLTYPE
    add_ScriptDialogOpening(ICoreWebView2ScriptDialogOpeningEventHandler* /*handler*/,
                            EventRegistrationToken* /*token*/) override {
        return not_implemented(L"ICoreWebView2::add_ScriptDialogOpening");
    }
    HRESULT STDMETHODCALLTYPE remove_ScriptDialogOpening(EventRegistrationToken /*token*/) override {
        return not_implemented(L"ICoreWebView2::remove_ScriptDialogOpening");
    }
    HRESULT STDMETHODCALLTYPE
    add_PermissionRequested(ICoreWebView2PermissionRequestedEventHandler* /*handler*/,
                            EventRegistrationToken* /*token*/) override {
        return not_implemented(L"ICoreWebView2::add_PermissionRequested");
    }
    HRESULT STDMETHODCALLTYPE remove_PermissionRequested(EventRegistrationToken /*token*/) override {
        return not_implemented(L"ICoreWebView2::remove_PermissionRequested");
    }
    HRESULT STDMETHODCALLTYPE add_ProcessFailed(ICoreWebView2ProcessFailedEventHandler* /*handler*/,
                                                EventRegistrationToken* /*token*/) override {
        return not_implemented(L"ICoreWebView2::add_ProcessFailed");
    }
    HRESULT STDMETHODCALLTYPE remove_ProcessFailed(EventRegistrationToken /*token*/) override {
        return not_implemented(L"ICoreWebView2::remove_ProcessFailed");
    }
    HRESULT STDMETHODCALLTYPE AddScriptToExecuteOnDocumentCreated(
        LPCWSTR /*script*/,
        ICoreWebView2AddScriptToExecuteOnDocumentCreatedCompletedHandler* /*handler*/) override {
        return not_implemented(L"ICoreWebView2::AddScriptToExecuteOnDocumentCreated");
    }
    HRESULT STDMETHODCALLTYPE RemoveScriptToExecuteOnDocumentCreated(LPCWSTR /*id*/) override {
        return not_implemented(L"ICoreWebView2::RemoveScriptToExecuteOnDocumentCreated");
    }
    HRESULT STDMETHODCALLTYPE
    CapturePreview(COREWEBVIEW2_CAPTURE_PREVIEW_IMAGE_FORMAT /*format*/, IStream* /*stream*/,
                   ICoreWebView2CapturePreviewCompletedHandler* /*handler*/) override {
        return not_implemented(L"ICoreWebView2::CapturePreview");
    }
    HRESULT STDMETHODCALLTYPE Reload() override { return not_implemented(L"ICoreWebView2::Reload"); }
    HRESULT STDMETHODCALLTYPE PostWebMessageAsJson(LPCWSTR /*json*/) override {
        return not_implemented(L"ICoreWebView2::PostWebMessageAsJson");
    }
    HRESULT STDMETHODCALLTYPE remove_WebMessageReceived(EventRegistrationToken /*token*/) override {
        return not_implemented(L"ICoreWebView2::remove_WebMessageReceived");
    }
    HRESULT STDMETHODCALLTYPE CallDevToolsProtocolMethod(
        LPCWSTR /*method*/, LPCWSTR /*parameters_json*/,
        ICoreWebView2CallDevToolsProtocolMethodCompletedHandler* /*handler*/) override {
        return not_implemented(L"ICoreWebView2::CallDevToolsProtocolMethod");
    }
    HRESULT STDMETHODCALLTYPE get_BrowserProcessId(UINT32* /*value*/) override {
        return not_implemented(L"ICoreWebView2::get_BrowserProcessId");
    }
    HRESULT STDMETHODCALLTYPE get_CanGoBack(BOOL* /*value*/) override {
        return not_implemented(L"ICoreWebView2::get_CanGoBack");
    }
    HRESULT STDMETHODCALLTYPE get_CanGoForward(BOOL* /*value*/) override {
        return not_implemented(L"ICoreWebView2::get_CanGoForward");
    }
    HRESULT STDMETHODCALLTYPE GoBack() override { return not_implemented(L"ICoreWebView2::GoBack"); }
    HRESULT STDMETHODCALLTYPE GoForward() override { return not_implemented(L"ICoreWebView2::GoForward"); }
    HRESULT STDMETHODCALLTYPE GetDevToolsProtocolEventReceiver(
        LPCWSTR /*event_name*/, ICoreWebView2DevToolsProtocolEventReceiver** /*receiver*/) override {
        return not_implemented(L"ICoreWebView2::GetDevToolsProtocolEventReceiver");
    }
    HRESULT STDMETHODCALLTYPE Stop() override { return not_implemented(L"ICoreWebView2::Stop"); }
    HRESULT STDMETHODCALLTYPE add_NewWindowRequested(ICoreWebView2NewWindowRequestedEventHandler* /*handler*/,
                                                     EventRegistrationToken* /*token*/) override {
        return not_implemented(L"ICoreWebView2::add_NewWindowRequested");
    }
    HRESULT STDMETHODCALLTYPE remove_NewWindowRequested(EventRegistrationToken /*token*/) override {
        return not_implemented(L"ICoreWebView2::remove_NewWindowRequested");
    }
    HRESULT STDMETHODCALLTYPE
    add_DocumentTitleChanged(ICoreWebView2DocumentTitleChangedEventHandler* /*handler*/,
                             EventRegistrationToken* /*token*/) override {
        return not_implemented(L"ICoreWebView2::add_DocumentTitleChanged");
    }
    HRESULT STDMETHODCALLTYPE remove_DocumentTitleChanged(EventRegistrationToken /*token*/) override {
        return not_implemented(L"ICoreWebView2::remove_DocumentTitleChanged");
    }
    HRESULT STDMETHODCALLTYPE get_DocumentTitle(LPWSTR* /*value*/) override {
        return not_implemented(L"ICoreWebView2::get_DocumentTitle");
    }
    HRESULT STDMETHODCALLTYPE AddHostObjectToScript(LPCWSTR /*name*/, VARIANT* /*object*/) override {
        return not_implemented(L"ICoreWebView2::AddHostObjectToScript");
    }
    HRESULT STDMETHODCALLTYPE RemoveHostObjectFromScript(LPCWSTR /*name*/) override {
        return not_implemented(L"ICoreWebView2::RemoveHostObjectFromScript");
    }
    HRESULT STDMETHODCALLTYPE OpenDevToolsWindow() override {
        return not_implemented(L"ICoreWebView2::OpenDevToolsWindow");
    }
    HRESULT STDMETHODCALLTYPE add_ContainsFullScreenElementChanged(
        ICoreWebView2ContainsFullScreenElementChangedEventHandler* /*handler*/,
        EventRegistrationToken* /*token*/) override {
        return not_implemented(L"ICoreWebView2::add_ContainsFullScreenElementChanged");
    }
    HRESULT STDMETHODCALLTYPE
    remove_ContainsFullScreenElementChanged(EventRegistrationToken /*token*/) override {
        return not_implemented(L"ICoreWebView2::remove_ContainsFullScreenElementChanged");
    }
    HRESULT STDMETHODCALLTYPE get_ContainsFullScreenElement(BOOL* /*value*/) override {
        return not_implemented(L"ICoreWebView2::get_ContainsFullScreenElement");
    }
    HRESULT STDMETHODCALLTYPE
    add_WebResourceRequested(ICoreWebView2WebResourceRequestedEventHandler* /*handler*/,
                             EventRegistrationToken* /*token*/) override {
        return not_implemented(L"ICoreWebView2::add_WebResourceRequested");
    }
    HRESULT STDMETHODCALLTYPE remove_WebResourceRequested(EventRegistrationToken /*token*/) override {
        return not_implemented(L"ICoreWebView2::remove_WebResourceRequested");
    }
    HRESULT STDMETHODCALLTYPE
    AddWebResourceRequestedFilter(LPCWSTR /*uri*/, COREWEBVIEW2_WEB_RESOURCE_CONTEXT /*context*/) override {
        return not_implemented(L"ICoreWebView2::AddWebResourceRequestedFilter");
    }
    HRESULT STDMETHODCALLTYPE RemoveWebResourceRequestedFilter(
        LPCWSTR /*uri*/, COREWEBVIEW2_WEB_RESOURCE_CONTEXT /*context*/) override {
        return not_implemented(L"ICoreWebView2::RemoveWebResourceRequestedFilter");
    }
    HRESULT STDMETHODCALLTYPE
    add_WindowCloseRequested(ICoreWebView2WindowCloseRequestedEventHandler* /*handler*/,
                             EventRegistrationToken* /*token*/) override {
        return not_implemented(L"ICoreWebView2::add_WindowCloseRequested");
    }
    HRESULT STDMETHODCALLTYPE remove_WindowCloseRequested(EventRegistrationToken /*token*/) override {
        return not_implemented(L"ICoreWebView2::remove_WindowCloseRequested");
    }
};
