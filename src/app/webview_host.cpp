#include "app/webview_host.h"

#include "app/event_handler.h"
#include "app/page_commands.h"
#include "ui/page_text.h"
#include "ui/protocol.h"

bool g_uninstall_gui = false;
ComPtr<ICoreWebView2Controller> g_controller;
ComPtr<ICoreWebView2> g_webview;

namespace {

/// Where the browser keeps its profile.
std::wstring user_data_folder() {
    wchar_t folder[MAX_PATH] = {};
    // Ends in a backslash; on failure the folder becomes one of the current directory.
    GetTempPathW(MAX_PATH, folder);
    return std::wstring(folder) + L"VeyraInstaller_WebView2";
}

// Results of the calls to the control are not checked, in all that follows: there is nobody to tell.

void restrict_view() {
    ComPtr<ICoreWebView2Settings> settings;
    if (SUCCEEDED(g_webview->get_Settings(settings.out())) && settings) {
        settings->put_IsZoomControlEnabled(FALSE);
        settings->put_IsStatusBarEnabled(FALSE);
        settings->put_AreDevToolsEnabled(FALSE);
    }
}

/// Without it the control is white until the page is drawn.
void paint_background() {
    ComPtr<ICoreWebView2Controller2> controller2;
    if (SUCCEEDED(g_controller->QueryInterface(IID_ICoreWebView2Controller2, controller2.out_void())) &&
        controller2) {
        controller2->put_DefaultBackgroundColor(
            {255, background_color.red, background_color.green, background_color.blue});
    }
}

/// The handler stays registered as long as the view lives, so its token is of no use.
void listen_to_page() {
    const auto handler = make_handler<ICoreWebView2WebMessageReceivedEventHandler>(
        IID_ICoreWebView2WebMessageReceivedEventHandler, nullptr, on_web_message);
    EventRegistrationToken token = {};
    g_webview->add_WebMessageReceived(handler.get(), &token);
}

void open_removal_when_loaded() {
    const auto handler = make_handler<ICoreWebView2NavigationCompletedEventHandler>(
        IID_ICoreWebView2NavigationCompletedEventHandler, nullptr, on_navigation_completed);
    EventRegistrationToken token = {};
    g_webview->add_NavigationCompleted(handler.get(), &token);
}

} // namespace

void init_webview(HWND window) {
    const auto handler = make_handler<ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler>(
        IID_ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler, window, on_environment_created);
    // Without a runtime the window stays empty and can be closed.
    static_cast<void>(CreateCoreWebView2EnvironmentWithOptions(nullptr, user_data_folder().c_str(), nullptr,
                                                               handler.get()));
}

HRESULT on_environment_created(HWND window, HRESULT /*status*/, ICoreWebView2Environment* environment) {
    if (environment == nullptr) {
        return E_FAIL;
    }
    const auto handler = make_handler<ICoreWebView2CreateCoreWebView2ControllerCompletedHandler>(
        IID_ICoreWebView2CreateCoreWebView2ControllerCompletedHandler, window, on_controller_created);
    environment->CreateCoreWebView2Controller(window, handler.get());
    return S_OK;
}

HRESULT on_controller_created(HWND window, HRESULT /*status*/, ICoreWebView2Controller* controller) {
    if (controller == nullptr) {
        return E_FAIL;
    }
    controller->AddRef();
    g_controller.reset(controller);
    g_controller->get_CoreWebView2(g_webview.out());
    fit_view_to_window(window);
    if (!g_webview) {
        // The browser has ended in the meantime; the window stays empty.
        return S_OK;
    }
    restrict_view();
    paint_background();
    // Before the page is loaded, so that no early message is lost.
    listen_to_page();
    g_webview->NavigateToString(page_text().c_str());
    if (g_uninstall_gui) {
        open_removal_when_loaded();
    }
    return S_OK;
}

HRESULT on_navigation_completed(HWND /*window*/, ICoreWebView2* sender,
                                ICoreWebView2NavigationCompletedEventArgs* /*args*/) {
    sender->ExecuteScript(show_uninstall_confirm_script, nullptr);
    return S_OK;
}

void fit_view_to_window(HWND window) {
    if (g_controller) {
        RECT bounds = {};
        GetClientRect(window, &bounds);
        g_controller->put_Bounds(bounds);
    }
}

void show_to_page(const std::wstring* text) {
    if (g_webview) {
        g_webview->PostWebMessageAsString(text->c_str());
    }
}
