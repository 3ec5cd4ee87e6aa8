#include "view.h"

#include <cwchar>
#include <optional>

#include "bridge_link.h"
#include "event_args.h"
#include "settings.h"
#include "ui_thread.h"

namespace {

// 2 MB of UTF-16.
constexpr std::size_t longest_html = 1048576;

} // namespace

/// S_OK when the method may be carried out now.
HRESULT View::refusal(const wchar_t* method) const {
    if (!is_on_ui_thread(method)) {
        return RPC_E_WRONG_THREAD;
    }
    if (!is_usable_) {
        record_note(std::wstring(L"called on a view without a browser: ") + method);
        return HRESULT_FROM_WIN32(ERROR_INVALID_STATE);
    }
    return S_OK;
}

HRESULT View::get_Settings(ICoreWebView2Settings** settings) {
    const HRESULT result = refusal(L"ICoreWebView2::get_Settings");
    if (FAILED(result)) {
        return result;
    }
    if (settings == nullptr) {
        return E_POINTER;
    }
    record_call(L"ICoreWebView2::get_Settings");
    *settings = new Settings();
    return S_OK;
}

HRESULT View::NavigateToString(LPCWSTR html) {
    const HRESULT result = refusal(L"ICoreWebView2::NavigateToString");
    if (FAILED(result)) {
        return result;
    }
    if (html == nullptr) {
        return E_POINTER;
    }
    if (std::wcslen(html) > longest_html) {
        return E_INVALIDARG;
    }
    send_to_bridge(MessageWriter(FromProgram::navigate).text(html));
    return S_OK;
}

HRESULT View::ExecuteScript(LPCWSTR script, ICoreWebView2ExecuteScriptCompletedHandler* handler) {
    const HRESULT result = refusal(L"ICoreWebView2::ExecuteScript");
    if (FAILED(result)) {
        return result;
    }
    if (script == nullptr) {
        return E_POINTER;
    }
    const int id = ++last_id_;
    if (handler != nullptr) {
        ProgramHandler<ICoreWebView2ExecuteScriptCompletedHandler> completed(
            handler, IID_ICoreWebView2ExecuteScriptCompletedHandler,
            L"ICoreWebView2ExecuteScriptCompletedHandler");
        if (!completed) {
            return E_NOINTERFACE;
        }
        script_handlers_[id] = std::move(completed);
    }
    send_to_bridge(MessageWriter(FromProgram::execute_script).number(id).text(script));
    return S_OK;
}

HRESULT View::PostWebMessageAsString(LPCWSTR text) {
    const HRESULT result = refusal(L"ICoreWebView2::PostWebMessageAsString");
    if (FAILED(result)) {
        return result;
    }
    if (text == nullptr) {
        return E_POINTER;
    }
    send_to_bridge(MessageWriter(FromProgram::post_string).text(text));
    return S_OK;
}

/// Keeps a handler of the program and gives it a token.
template<typename Interface>
HRESULT View::add_handler(std::list<ProgramHandler<Interface>>& handlers, Interface* handler, REFIID iid,
                          const wchar_t* handler_name, const wchar_t* method, EventRegistrationToken* token) {
    const HRESULT result = refusal(method);
    if (FAILED(result)) {
        return result;
    }
    if (handler == nullptr || token == nullptr) {
        record_trouble(std::wstring(L"called without a handler or a place for the token: ") + method);
        return E_POINTER;
    }
    ProgramHandler<Interface> added(handler, iid, handler_name);
    if (!added) {
        return E_NOINTERFACE;
    }
    record_call(method);
    handlers.push_back(std::move(added));
    token->value = ++last_id_;
    return S_OK;
}

HRESULT View::add_NavigationCompleted(ICoreWebView2NavigationCompletedEventHandler* handler,
                                      EventRegistrationToken* token) {
    return add_handler(navigation_handlers_, handler, IID_ICoreWebView2NavigationCompletedEventHandler,
                       L"ICoreWebView2NavigationCompletedEventHandler",
                       L"ICoreWebView2::add_NavigationCompleted", token);
}

HRESULT View::add_WebMessageReceived(ICoreWebView2WebMessageReceivedEventHandler* handler,
                                     EventRegistrationToken* token) {
    return add_handler(message_handlers_, handler, IID_ICoreWebView2WebMessageReceivedEventHandler,
                       L"ICoreWebView2WebMessageReceivedEventHandler",
                       L"ICoreWebView2::add_WebMessageReceived", token);
}

void View::handle(MessageReader& message) {
    // A handler may release the last reference to the view.
    AddRef();
    switch (message.kind()) {
    case FromBridge::web_message:
        on_web_message(message);
        break;
    case FromBridge::navigation_completed:
        on_navigation_completed();
        break;
    case FromBridge::script_result:
        on_script_result(message);
        break;
    default:
        break;
    }
    Release();
}

void View::on_web_message(MessageReader& message) {
    const bool is_string = message.number() != 0;
    std::wstring text = message.text();
    auto* const args = new WebMessageArgs(is_string ? std::optional(std::move(text)) : std::nullopt);
    for (const auto& handler : message_handlers_) {
        handler.invoke(static_cast<ICoreWebView2*>(this),
                       static_cast<ICoreWebView2WebMessageReceivedEventArgs*>(args));
    }
    args->Release();
}

void View::on_navigation_completed() {
    auto* const args = new NavigationCompletedArgs();
    for (const auto& handler : navigation_handlers_) {
        handler.invoke(static_cast<ICoreWebView2*>(this),
                       static_cast<ICoreWebView2NavigationCompletedEventArgs*>(args));
    }
    args->Release();
}

void View::on_script_result(MessageReader& message) {
    const auto found = script_handlers_.find(message.number());
    if (found == script_handlers_.end()) {
        return; // the program passed no handler
    }
    const auto handler = std::move(found->second);
    script_handlers_.erase(found);
    const HRESULT result = message.number();
    const std::wstring json = message.text();
    handler.invoke(result, json.c_str());
}

void View::close() {
    is_usable_ = false;
    message_handlers_.clear();
    navigation_handlers_.clear();
    script_handlers_.clear();
}
