#include "environment.h"

#include <memory>

#include "bridge_link.h"
#include "controller.h"
#include "program_handler.h"
#include "ui_thread.h"

namespace {

/// A controller that the program has asked for and that is not there yet.
struct PendingController {
    std::unique_ptr<PageWindow> window;
    ProgramHandler<ICoreWebView2CreateCoreWebView2ControllerCompletedHandler> handler;
};

// UI thread only. Never freed: the program may release its objects while the process is ending.
auto& g_pending = *new std::unique_ptr<PendingController>();
bool g_had_controller = false;

/// Answers the program: with a controller, or with the reason why there is none.
void complete(HRESULT result) {
    const std::unique_ptr<PendingController> pending = std::move(g_pending);
    if (!pending) {
        return;
    }
    if (SUCCEEDED(result) && !pending->window->is_alive()) {
        result = E_ABORT; // the program's window went first
    }
    if (FAILED(result)) {
        pending->handler.invoke(result, static_cast<ICoreWebView2Controller*>(nullptr));
        return;
    }
    auto* const controller = new Controller(std::move(pending->window));
    pending->handler.invoke(S_OK, static_cast<ICoreWebView2Controller*>(controller));
    controller->Release();
}

} // namespace

HRESULT Environment::CreateCoreWebView2Controller(
    HWND parent, ICoreWebView2CreateCoreWebView2ControllerCompletedHandler* handler) {
    if (!is_on_ui_thread(L"ICoreWebView2Environment::CreateCoreWebView2Controller")) {
        return RPC_E_WRONG_THREAD;
    }
    if (handler == nullptr) {
        return E_POINTER;
    }
    if (IsWindow(parent) == FALSE) {
        return HRESULT_FROM_WIN32(ERROR_INVALID_WINDOW_HANDLE);
    }
    if (std::exchange(g_had_controller, true)) {
        record_trouble(L"a second controller was asked for");
        return E_NOTIMPL;
    }
    ProgramHandler<ICoreWebView2CreateCoreWebView2ControllerCompletedHandler> completed(
        handler, IID_ICoreWebView2CreateCoreWebView2ControllerCompletedHandler,
        L"ICoreWebView2CreateCoreWebView2ControllerCompletedHandler");
    if (!completed) {
        return E_NOINTERFACE;
    }
    // The child window is there before the call returns; all else comes through the message loop.
    auto window = std::make_unique<PageWindow>(parent, [] { run_on_ui_thread([] { complete(E_ABORT); }); });
    const UINT dpi = window->dpi();
    g_pending =
        std::make_unique<PendingController>(PendingController{std::move(window), std::move(completed)});
    if (is_bridge_connected()) {
        send_to_bridge(MessageWriter(FromProgram::create_controller).number(dpi));
    } else {
        record_note(L"there is no bridge, so there is no page");
        run_on_ui_thread([] { complete(E_FAIL); });
    }
    return S_OK;
}

HRESULT Environment::CreateWebResourceResponse(IStream* /*content*/, int /*status*/, LPCWSTR /*reason*/,
                                               LPCWSTR /*headers*/,
                                               ICoreWebView2WebResourceResponse** /*response*/) {
    return not_implemented(L"ICoreWebView2Environment::CreateWebResourceResponse");
}

HRESULT Environment::get_BrowserVersionString(LPWSTR* /*value*/) {
    return not_implemented(L"ICoreWebView2Environment::get_BrowserVersionString");
}

HRESULT
Environment::add_NewBrowserVersionAvailable(ICoreWebView2NewBrowserVersionAvailableEventHandler* /*handler*/,
                                            EventRegistrationToken* /*token*/) {
    return not_implemented(L"ICoreWebView2Environment::add_NewBrowserVersionAvailable");
}

HRESULT Environment::remove_NewBrowserVersionAvailable(EventRegistrationToken /*token*/) {
    return not_implemented(L"ICoreWebView2Environment::remove_NewBrowserVersionAvailable");
}

void handle_bridge_message(MessageReader& message) {
    if (message.kind() == FromBridge::controller_ready) {
        complete(message.number());
    } else if (Controller* const controller = Controller::current(); controller != nullptr) {
        controller->AddRef(); // a handler may release the program's own reference
        controller->handle(message);
        controller->Release();
    }
}
