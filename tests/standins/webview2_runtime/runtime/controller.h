#pragma once

#include <memory>

#include "com_object.h"
#include "page_window.h"
#include "unused_controller_methods.h"
#include "view.h"

/// The place of the view in the program's window. There is one per process here: a second one is refused.
class Controller final : public ComObject<UnusedControllerMethods, Controller> {
  public:
    static constexpr const wchar_t* object_name = L"ICoreWebView2Controller";
    static bool answers(REFIID iid) {
        return iid == IID_ICoreWebView2Controller || iid == IID_ICoreWebView2Controller2;
    }

    /// Takes over the child window that shows the page.
    explicit Controller(std::unique_ptr<PageWindow> window);
    ~Controller();

    HRESULT STDMETHODCALLTYPE put_Bounds(RECT bounds) override;
    HRESULT STDMETHODCALLTYPE Close() override;
    HRESULT STDMETHODCALLTYPE get_CoreWebView2(ICoreWebView2** view) override;
    HRESULT STDMETHODCALLTYPE put_DefaultBackgroundColor(COREWEBVIEW2_COLOR color) override;

    /// The controller that the program holds, null without one. UI thread.
    static Controller* current();

    /// Passes on what came from the bridge. UI thread.
    void handle(MessageReader& message);

  private:
    HRESULT refusal(const wchar_t* method) const;
    void close();

    std::unique_ptr<PageWindow> window_;
    View* view_;
    bool is_closed_ = false;
};
