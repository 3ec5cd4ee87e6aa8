// A WebView2 control of the test's own, which notes what it is asked for. It
// answers inside the call and shows nothing.
#pragma once

#include <string>
#include <vector>

#include "unused_controller_methods.h"
#include "unused_settings_methods.h"
#include "unused_view_methods.h"
#include "webview2/webview2.h"

/// The calls that all objects of a control have seen, in their order.
using Calls = std::vector<std::string>;

/// An object that lives in the test and only counts its references.
template<typename Methods>
class Referenced : public Methods {
  public:
    explicit Referenced(Calls& calls) : calls_(calls) {}
    Referenced(const Referenced&) = delete;
    Referenced& operator=(const Referenced&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID /*id*/, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override { return --references_; }

    /// Those of others; the test's own is not counted.
    [[nodiscard]] ULONG references() const { return references_; }

    /// What every call without an outcome of its own answers.
    HRESULT answer = S_OK;

  protected:
    ~Referenced() = default;

    HRESULT note(const std::string& call) {
        calls_.push_back(call);
        return answer;
    }

    template<typename Interface>
    HRESULT hand_out(Interface** place, Interface& object) {
        object.AddRef();
        *place = &object;
        return S_OK;
    }

  private:
    Calls& calls_;
    ULONG references_ = 0;
};

class RecordedSettings final : public Referenced<UnusedSettingsMethods> {
  public:
    using Referenced::Referenced;
    HRESULT STDMETHODCALLTYPE put_IsStatusBarEnabled(BOOL enabled) override;
    HRESULT STDMETHODCALLTYPE put_AreDevToolsEnabled(BOOL enabled) override;
    HRESULT STDMETHODCALLTYPE put_IsZoomControlEnabled(BOOL enabled) override;
};

class RecordedView final : public Referenced<UnusedViewMethods> {
  public:
    explicit RecordedView(Calls& calls) : Referenced(calls), settings(calls) {}
    HRESULT STDMETHODCALLTYPE get_Settings(ICoreWebView2Settings** value) override;
    HRESULT STDMETHODCALLTYPE NavigateToString(LPCWSTR html) override;
    HRESULT STDMETHODCALLTYPE add_NavigationCompleted(ICoreWebView2NavigationCompletedEventHandler* handler,
                                                      EventRegistrationToken* token) override;
    HRESULT STDMETHODCALLTYPE ExecuteScript(LPCWSTR script,
                                            ICoreWebView2ExecuteScriptCompletedHandler* handler) override;
    HRESULT STDMETHODCALLTYPE PostWebMessageAsString(LPCWSTR text) override;
    HRESULT STDMETHODCALLTYPE add_WebMessageReceived(ICoreWebView2WebMessageReceivedEventHandler* handler,
                                                     EventRegistrationToken* token) override;

    RecordedSettings settings;
    bool has_settings = true;
    /// The page that was loaded last.
    std::wstring page;
};

class RecordedController final : public Referenced<UnusedControllerMethods> {
  public:
    explicit RecordedController(Calls& calls) : Referenced(calls), view(calls) {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
    HRESULT STDMETHODCALLTYPE put_Bounds(RECT bounds) override;
    HRESULT STDMETHODCALLTYPE Close() override;
    HRESULT STDMETHODCALLTYPE get_CoreWebView2(ICoreWebView2** value) override;
    HRESULT STDMETHODCALLTYPE put_DefaultBackgroundColor(COREWEBVIEW2_COLOR color) override;

    RecordedView view;
    bool has_view = true;
    bool has_second_interface = true;
};
