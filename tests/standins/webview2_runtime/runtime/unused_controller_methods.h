#pragma once

#include "journal.h"
#include "webview2/interfaces.h"

/// Everything of ICoreWebView2Controller2 that the installer has no use for: recorded, and refused with
/// E_NOTIMPL.
struct UnusedControllerMethods : public ICoreWebView2Controller2 {
    HRESULT STDMETHODCALLTYPE get_IsVisible(BOOL* /*value*/) override {
        return not_implemented(L"ICoreWebView2Controller::get_IsVisible");
    }
    HRESULT STDMETHODCALLTYPE put_IsVisible(BOOL /*value*/) override {
        return not_implemented(L"ICoreWebView2Controller::put_IsVisible");
    }
    HRESULT STDMETHODCALLTYPE get_Bounds(RECT* /*value*/) override {
        return not_implemented(L"ICoreWebView2Controller::get_Bounds");
    }
    HRESULT STDMETHODCALLTYPE get_ZoomFactor(double* /*value*/) override {
        return not_implemented(L"ICoreWebView2Controller::get_ZoomFactor");
    }
    HRESULT STDMETHODCALLTYPE put_ZoomFactor(double /*factor*/) override {
        return not_implemented(L"ICoreWebView2Controller::put_ZoomFactor");
    }
    HRESULT STDMETHODCALLTYPE add_ZoomFactorChanged(ICoreWebView2ZoomFactorChangedEventHandler* /*handler*/,
                                                    EventRegistrationToken* /*token*/) override {
        return not_implemented(L"ICoreWebView2Controller::add_ZoomFactorChanged");
    }
    HRESULT STDMETHODCALLTYPE remove_ZoomFactorChanged(EventRegistrationToken /*token*/) override {
        return not_implemented(L"ICoreWebView2Controller::remove_ZoomFactorChanged");
    }
    HRESULT STDMETHODCALLTYPE SetBoundsAndZoomFactor(RECT /*bounds*/, double /*zoom_factor*/) override {
        return not_implemented(L"ICoreWebView2Controller::SetBoundsAndZoomFactor");
    }
    HRESULT STDMETHODCALLTYPE MoveFocus(COREWEBVIEW2_MOVE_FOCUS_REASON /*reason*/) override {
        return not_implemented(L"ICoreWebView2Controller::MoveFocus");
    }
    HRESULT STDMETHODCALLTYPE add_MoveFocusRequested(ICoreWebView2MoveFocusRequestedEventHandler* /*handler*/,
                                                     EventRegistrationToken* /*token*/) override {
        return not_implemented(L"ICoreWebView2Controller::add_MoveFocusRequested");
    }
    HRESULT STDMETHODCALLTYPE remove_MoveFocusRequested(EventRegistrationToken /*token*/) override {
        return not_implemented(L"ICoreWebView2Controller::remove_MoveFocusRequested");
    }
    HRESULT STDMETHODCALLTYPE add_GotFocus(ICoreWebView2FocusChangedEventHandler* /*handler*/,
                                           EventRegistrationToken* /*token*/) override {
        return not_implemented(L"ICoreWebView2Controller::add_GotFocus");
    }
    HRESULT STDMETHODCALLTYPE remove_GotFocus(EventRegistrationToken /*token*/) override {
        return not_implemented(L"ICoreWebView2Controller::remove_GotFocus");
    }
    HRESULT STDMETHODCALLTYPE add_LostFocus(ICoreWebView2FocusChangedEventHandler* /*handler*/,
                                            EventRegistrationToken* /*token*/) override {
        return not_implemented(L"ICoreWebView2Controller::add_LostFocus");
    }
    HRESULT STDMETHODCALLTYPE remove_LostFocus(EventRegistrationToken /*token*/) override {
        return not_implemented(L"ICoreWebView2Controller::remove_LostFocus");
    }
    HRESULT STDMETHODCALLTYPE
    add_AcceleratorKeyPressed(ICoreWebView2AcceleratorKeyPressedEventHandler* /*handler*/,
                              EventRegistrationToken* /*token*/) override {
        return not_implemented(L"ICoreWebView2Controller::add_AcceleratorKeyPressed");
    }
    HRESULT STDMETHODCALLTYPE remove_AcceleratorKeyPressed(EventRegistrationToken /*token*/) override {
        return not_implemented(L"ICoreWebView2Controller::remove_AcceleratorKeyPressed");
    }
    HRESULT STDMETHODCALLTYPE get_ParentWindow(HWND* /*value*/) override {
        return not_implemented(L"ICoreWebView2Controller::get_ParentWindow");
    }
    HRESULT STDMETHODCALLTYPE put_ParentWindow(HWND /*parent*/) override {
        return not_implemented(L"ICoreWebView2Controller::put_ParentWindow");
    }
    HRESULT STDMETHODCALLTYPE NotifyParentWindowPositionChanged() override {
        return not_implemented(L"ICoreWebView2Controller::NotifyParentWindowPositionChanged");
    }
    HRESULT STDMETHODCALLTYPE get_DefaultBackgroundColor(COREWEBVIEW2_COLOR* /*value*/) override {
        return not_implemented(L"ICoreWebView2Controller2::get_DefaultBackgroundColor");
    }
};
