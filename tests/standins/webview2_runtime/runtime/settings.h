#pragma once

#include "com_object.h"
#include "unused_settings_methods.h"

/// The switches of the view. They are only recorded: the page in the bridge's browser has neither a status
/// bar nor developer tools, and is never zoomed by the wheel.
class Settings final : public ComObject<UnusedSettingsMethods, Settings> {
  public:
    static constexpr const wchar_t* object_name = L"ICoreWebView2Settings";
    static bool answers(REFIID iid) { return iid == IID_ICoreWebView2Settings; }

    HRESULT STDMETHODCALLTYPE put_IsStatusBarEnabled(BOOL value) override;
    HRESULT STDMETHODCALLTYPE put_AreDevToolsEnabled(BOOL value) override;
    HRESULT STDMETHODCALLTYPE put_IsZoomControlEnabled(BOOL value) override;
};
