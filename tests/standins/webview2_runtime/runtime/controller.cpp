#include "controller.h"

#include "bridge_link.h"
#include "ui_thread.h"

namespace {

// Not counted: the program alone keeps the controller alive.
Controller* g_current = nullptr;

} // namespace

Controller* Controller::current() {
    return g_current;
}

Controller::Controller(std::unique_ptr<PageWindow> window) : window_(std::move(window)), view_(new View()) {
    g_current = this;
}

Controller::~Controller() {
    g_current = nullptr;
    close();
    view_->Release();
}

/// S_OK when the method may be carried out now.
HRESULT Controller::refusal(const wchar_t* method) const {
    if (!is_on_ui_thread(method)) {
        return RPC_E_WRONG_THREAD;
    }
    return is_closed_ ? HRESULT_FROM_WIN32(ERROR_INVALID_STATE) : S_OK;
}

HRESULT Controller::get_CoreWebView2(ICoreWebView2** view) {
    const HRESULT result = refusal(L"ICoreWebView2Controller::get_CoreWebView2");
    if (FAILED(result)) {
        return result;
    }
    if (view == nullptr) {
        return E_POINTER;
    }
    record_call(L"ICoreWebView2Controller::get_CoreWebView2");
    view_->AddRef();
    *view = view_;
    return S_OK;
}

HRESULT Controller::put_Bounds(RECT bounds) {
    const HRESULT result = refusal(L"ICoreWebView2Controller::put_Bounds");
    if (FAILED(result)) {
        return result;
    }
    window_->place(bounds);
    send_to_bridge(MessageWriter(FromProgram::bounds)
                       .number(bounds.left)
                       .number(bounds.top)
                       .number(bounds.right)
                       .number(bounds.bottom)
                       .number(window_->dpi()));
    return S_OK;
}

HRESULT Controller::put_DefaultBackgroundColor(COREWEBVIEW2_COLOR color) {
    const HRESULT result = refusal(L"ICoreWebView2Controller2::put_DefaultBackgroundColor");
    if (FAILED(result)) {
        return result;
    }
    if (color.A != 0 && color.A != 255) {
        return E_INVALIDARG;
    }
    window_->set_background(RGB(color.R, color.G, color.B));
    send_to_bridge(MessageWriter(FromProgram::background)
                       .number(color.A)
                       .number(color.R)
                       .number(color.G)
                       .number(color.B));
    return S_OK;
}

HRESULT Controller::Close() {
    if (!is_on_ui_thread(L"ICoreWebView2Controller::Close")) {
        return RPC_E_WRONG_THREAD;
    }
    record_call(L"ICoreWebView2Controller::Close");
    close();
    return S_OK;
}

void Controller::close() {
    if (is_closed_) {
        return;
    }
    is_closed_ = true;
    view_->close();
    window_.reset();
    send_to_bridge(MessageWriter(FromProgram::closed));
}

void Controller::handle(MessageReader& message) {
    if (is_closed_) {
        return;
    }
    switch (message.kind()) {
    case FromBridge::frame:
        window_->show_frame(message.rest());
        send_to_bridge(MessageWriter(FromProgram::frame_painted));
        break;
    case FromBridge::cursor:
        window_->set_cursor(message.number());
        break;
    case FromBridge::browser_gone:
        record_note(L"the browser is gone");
        view_->lose_browser();
        break;
    default:
        view_->handle(message);
        break;
    }
}
