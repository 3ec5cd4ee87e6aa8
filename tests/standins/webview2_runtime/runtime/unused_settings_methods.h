#pragma once

#include "journal.h"
#include "webview2/interfaces.h"

/// Everything of ICoreWebView2Settings that the installer has no use for: recorded, and refused with
/// E_NOTIMPL.
struct UnusedSettingsMethods : public ICoreWebView2Settings {
    HRESULT STDMETHODCALLTYPE get_IsScriptEnabled(BOOL* /*value*/) override {
        return not_implemented(L"ICoreWebView2Settings::get_IsScriptEnabled");
    }
    HRESULT STDMETHODCALLTYPE put_IsScriptEnabled(BOOL /*value*/) override {
        return not_implemented(L"ICoreWebView2Settings::put_IsScriptEnabled");
    }
    HRESULT STDMETHODCALLTYPE get_IsWebMessageEnabled(BOOL* /*value*/) override {
        return not_implemented(L"ICoreWebView2Settings::get_IsWebMessageEnabled");
    }
    HRESULT STDMETHODCALLTYPE put_IsWebMessageEnabled(BOOL /*value*/) override {
        return not_implemented(L"ICoreWebView2Settings::put_IsWebMessageEnabled");
    }
    HRESULT STDMETHODCALLTYPE get_AreDefaultScriptDialogsEnabled(BOOL* /*value*/) override {
        return not_implemented(L"ICoreWebView2Settings::get_AreDefaultScriptDialogsEnabled");
    }
    HRESULT STDMETHODCALLTYPE put_AreDefaultScriptDialogsEnabled(BOOL /*value*/) override {
        return not_implemented(L"ICoreWebView2Settings::put_AreDefaultScriptDialogsEnabled");
    }
    HRESULT STDMETHODCALLTYPE get_IsStatusBarEnabled(BOOL* /*value*/) override {
        return not_implemented(L"ICoreWebView2Settings::get_IsStatusBarEnabled");
    }
    HRESULT STDMETHODCALLTYPE get_AreDevToolsEnabled(BOOL* /*value*/) override {
        return not_implemented(L"ICoreWebView2Settings::get_AreDevToolsEnabled");
    }
    HRESULT STDMETHODCALLTYPE get_AreDefaultContextMenusEnabled(BOOL* /*value*/) override {
        return not_implemented(L"ICoreWebView2Settings::get_AreDefaultContextMenusEnabled");
    }
    HRESULT STDMETHODCALLTYPE put_AreDefaultContextMenusEnabled(BOOL /*value*/) override {
        return not_implemented(L"ICoreWebView2Settings::put_AreDefaultContextMenusEnabled");
    }
    HRESULT STDMETHODCALLTYPE get_AreHostObjectsAllowed(BOOL* /*value*/) override {
        return not_implemented(L"ICoreWebView2Settings::get_AreHostObjectsAllowed");
    }
    HRESULT STDMETHODCALLTYPE put_AreHostObjectsAllowed(BOOL /*value*/) override {
        return not_implemented(L"ICoreWebView2Settings::put_AreHostObjectsAllowed");
    }
    HRESULT STDMETHODCALLTYPE get_IsZoomControlEnabled(BOOL* /*value*/) override {
        return not_implemented(L"ICoreWebView2Settings::get_IsZoomControlEnabled");
    }
    HRESULT STDMETHODCALLTYPE get_IsBuiltInErrorPageEnabled(BOOL* /*value*/) override {
        return not_implemented(L"ICoreWebView2Settings::get_IsBuiltInErrorPageEnabled");
    }
    HRESULT STDMETHODCALLTYPE put_IsBuiltInErrorPageEnabled(BOOL /*value*/) override {
        return not_implemented(L"ICoreWebView2Settings::put_IsBuiltInErrorPageEnabled");
    }
};
