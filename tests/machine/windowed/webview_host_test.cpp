// Every call that the program makes to the control.
// Fixed behaviour: the calls, their order and their arguments are prescribed, and that there are no others.
#include "app/webview_host.h"

#include <doctest/doctest.h>
#include <string>

#include <windows.h>

#include "living_blocks.h"
#include "recorded_webview.h"
#include "shown_window.h"
#include "ui/page_channel.h"
#include "ui/page_text.h"

namespace {

/// A runtime whose controllers the test hands out itself.
class RecordedEnvironment final : public Referenced<ICoreWebView2Environment> {
  public:
    using Referenced::Referenced;

    HRESULT STDMETHODCALLTYPE CreateCoreWebView2Controller(
        HWND parent, ICoreWebView2CreateCoreWebView2ControllerCompletedHandler* handler) override {
        CHECK(parent == g_main_window);
        handler->AddRef();
        waiting.reset(handler);
        return note("CreateCoreWebView2Controller");
    }
    HRESULT STDMETHODCALLTYPE
    CreateWebResourceResponse(IStream* /*content*/, int /*status*/, LPCWSTR /*reason*/, LPCWSTR /*headers*/,
                              ICoreWebView2WebResourceResponse** /*response*/) override {
        return not_implemented(L"CreateWebResourceResponse");
    }
    HRESULT STDMETHODCALLTYPE get_BrowserVersionString(LPWSTR* /*value*/) override {
        return not_implemented(L"get_BrowserVersionString");
    }
    HRESULT STDMETHODCALLTYPE
    add_NewBrowserVersionAvailable(ICoreWebView2NewBrowserVersionAvailableEventHandler* /*handler*/,
                                   EventRegistrationToken* /*token*/) override {
        return not_implemented(L"add_NewBrowserVersionAvailable");
    }
    HRESULT STDMETHODCALLTYPE remove_NewBrowserVersionAvailable(EventRegistrationToken /*token*/) override {
        return not_implemented(L"remove_NewBrowserVersionAvailable");
    }

    ComPtr<ICoreWebView2CreateCoreWebView2ControllerCompletedHandler> waiting;
};

/// The installer window with a control of the test's own, which the program lets go of at the end.
struct WindowWithControl {
    WindowWithControl() = default;
    WindowWithControl(const WindowWithControl&) = delete;
    WindowWithControl& operator=(const WindowWithControl&) = delete;
    ~WindowWithControl() {
        g_uninstall_gui = false;
        g_webview.reset();
        g_controller.reset();
        CHECK(controller.references() == 0);
        CHECK(controller.view.references() == 0);
        CHECK(controller.view.settings.references() == 0);
    }

    /// The program's answer to the controller, whose status is a failure all the same.
    HRESULT set_up() { return on_controller_created(g_main_window, E_ABORT, &controller); }

    /// What was called since the last time.
    Calls take() { return std::move(calls); }

    Calls calls;
    const ShownWindow shown;
    RecordedController controller{calls};
};

/// The client area as the control is given it.
std::string bounds_of_window() {
    RECT client = {};
    GetClientRect(g_main_window, &client);
    REQUIRE(client.right > 0);
    return "put_Bounds 0 0 " + std::to_string(client.right) + " " + std::to_string(client.bottom);
}

const Calls restricted = {"get_Settings", "put_IsZoomControlEnabled 0", "put_IsStatusBarEnabled 0",
                          "put_AreDevToolsEnabled 0"};
const Calls painted = {"QueryInterface", "put_DefaultBackgroundColor 255 8 12 20"};

Calls joined(const std::vector<Calls>& parts) {
    Calls all;
    for (const Calls& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

} // namespace

TEST_CASE("an environment is asked for a controller of the window whatever its status says") {
    WindowWithControl window;
    RecordedEnvironment environment(window.calls);
    environment.answer = E_FAIL;
    CHECK(on_environment_created(g_main_window, E_ABORT, &environment) == S_OK);
    CHECK(window.take() == Calls{"CreateCoreWebView2Controller"});
    CHECK(environment.references() == 0);
    REQUIRE(environment.waiting);
    CHECK(environment.waiting->Invoke(E_ABORT, &window.controller) == S_OK);
    CHECK(g_controller.get() == &window.controller);
    CHECK_FALSE(window.take().empty());
    // The handler waits in nobody's hands but the runtime's.
    environment.waiting->AddRef();
    CHECK(environment.waiting->Release() == 1);
}

TEST_CASE("without an environment or a controller the answer is E_FAIL and nothing happens") {
    WindowWithControl window;
    CHECK(on_environment_created(g_main_window, S_OK, nullptr) == E_FAIL);
    CHECK(on_controller_created(g_main_window, S_OK, nullptr) == E_FAIL);
    CHECK_FALSE(g_controller);
    CHECK_FALSE(g_webview);
    CHECK(window.take().empty());
}

TEST_CASE("the view is set up in its order with the page last and no call checked") {
    WindowWithControl window;
    for (const HRESULT answer : {S_OK, E_FAIL}) {
        window.controller.answer = answer;
        window.controller.view.answer = answer;
        window.controller.view.settings.answer = answer;
        CHECK(window.set_up() == S_OK);
        CHECK(window.take() == joined({{"get_CoreWebView2", bounds_of_window()},
                                       restricted,
                                       painted,
                                       {"add_WebMessageReceived", "NavigateToString"}}));
        CHECK((window.controller.view.page == page_text()));
        CHECK(g_controller.get() == &window.controller);
        CHECK(g_webview.get() == &window.controller.view);
        // The globals hold the only references.
        CHECK(window.controller.references() == 1);
        CHECK(window.controller.view.references() == 1);
        CHECK(window.controller.view.settings.references() == 0);
    }
}

TEST_CASE("a control without settings or a background of its own still shows the page") {
    WindowWithControl window;
    window.controller.view.has_settings = false;
    window.controller.has_second_interface = false;
    CHECK(window.set_up() == S_OK);
    CHECK(window.take() == Calls{"get_CoreWebView2", bounds_of_window(), "get_Settings", "QueryInterface",
                                 "add_WebMessageReceived", "NavigateToString"});
}

TEST_CASE("a control whose browser has ended leaves the window empty") {
    WindowWithControl window;
    window.controller.has_view = false;
    CHECK(window.set_up() == S_OK);
    CHECK(window.take() == Calls{"get_CoreWebView2", bounds_of_window()});
    CHECK_FALSE(g_webview);
}

TEST_CASE("the removal screen is opened after every navigation but only when it was asked for") {
    WindowWithControl window;
    g_uninstall_gui = true;
    CHECK(window.set_up() == S_OK);
    const Calls calls = window.take();
    REQUIRE(calls.size() > 2);
    CHECK(calls[calls.size() - 2] == "NavigateToString");
    CHECK(calls.back() == "add_NavigationCompleted");
    window.controller.view.answer = E_FAIL;
    CHECK(on_navigation_completed(nullptr, &window.controller.view, nullptr) == S_OK);
    CHECK(on_navigation_completed(nullptr, &window.controller.view, nullptr) == S_OK);
    const std::string script = "ExecuteScript goTo('s-uninstall-confirm');";
    CHECK(window.take() == Calls{script, script});
}

TEST_CASE("the view follows the client area and is empty while the window is minimised") {
    WindowWithControl window;
    window.set_up();
    window.take();
    const std::string bounds = bounds_of_window();
    CHECK(SendMessageW(g_main_window, WM_SIZE, SIZE_RESTORED, MAKELPARAM(1, 2)) == 0);
    CHECK(window.take() == Calls{bounds});
    for (int i = 0; i < 2; ++i) {
        ShowWindow(g_main_window, SW_MINIMIZE);
        const Calls minimised = window.take();
        REQUIRE_FALSE(minimised.empty());
        CHECK(minimised.back() == "put_Bounds 0 0 0 0");
        ShowWindow(g_main_window, SW_RESTORE);
        const Calls restored = window.take();
        REQUIRE_FALSE(restored.empty());
        CHECK(restored.back() == bounds);
    }
}

TEST_CASE("texts reach the page in their order and are freed with a view or without one") {
    WindowWithControl window;
    const std::string long_text = "{\"action\":\"status\",\"text\":\"" + std::string(300, 'x') + "\"}";
    const auto pump = [] {
        MSG message = {};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
            DispatchMessageW(&message);
        }
    };
    const long before = living_blocks();
    post_to_page(long_text);
    CHECK(living_blocks() > before);
    pump();
    CHECK(living_blocks() == before);

    window.set_up();
    window.take();
    post_to_page(long_text);
    post_to_page("");
    post_to_page("{\"text\":\"\xC3\xA9\"}");
    pump();
    CHECK(window.take() == Calls{"PostWebMessageAsString " + long_text, "PostWebMessageAsString ",
                                 "PostWebMessageAsString {\"text\":\"\xC3\xA9\"}"});

    const long with_view = living_blocks();
    post_to_page(long_text);
    pump();
    window.take();
    CHECK(living_blocks() == with_view);
}
