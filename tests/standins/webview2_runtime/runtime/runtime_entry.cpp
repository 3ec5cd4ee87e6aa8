// The runtime's only export. Everything that a loader and a program can see of it from outside is as with
// the real one: the checks, the order, the thread.
#include <memory>

#include <objbase.h>

#include "bridge_link.h"
#include "environment.h"
#include "outcomes.h"
#include "program_handler.h"
#include "ui_thread.h"

namespace {

using EnvironmentHandler = ProgramHandler<ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler>;

std::wstring environment_variable(const wchar_t* name) {
    wchar_t value[1024] = {};
    const DWORD length = GetEnvironmentVariableW(name, value, 1024);
    return {value, length < 1024 ? length : 0};
}

/// S_OK on a thread with a single-threaded apartment.
HRESULT check_apartment() {
    APTTYPE type = APTTYPE_CURRENT;
    APTTYPEQUALIFIER qualifier = APTTYPEQUALIFIER_NONE;
    if (FAILED(CoGetApartmentType(&type, &qualifier))) {
        return CO_E_NOTINITIALIZED;
    }
    return type == APTTYPE_STA || type == APTTYPE_MAINSTA ? S_OK : RPC_E_CHANGED_MODE;
}

std::wstring text_or_null(PCWSTR text) {
    return text == nullptr ? L"null" : text;
}

void record_creation(bool check_running_instance, int runtime_type, PCWSTR user_data_folder,
                     const IUnknown* options) {
    record_call(L"CreateWebViewEnvironmentWithOptionsInternal",
                std::wstring(check_running_instance ? L"true" : L"false") + L", " +
                    std::to_wstring(runtime_type) + L", " + text_or_null(user_data_folder) + L", " +
                    (options == nullptr ? L"null" : L"options"));
}

/// Greets the bridge, once per process; returns the outcomes that it wishes, or those of the environment
/// variable ORVANTA_WEBVIEW2_OUTCOMES.
std::wstring outcomes_of_bridge() {
    static const std::wstring outcomes = [] {
        if (connect_bridge()) {
            wchar_t program[MAX_PATH] = {};
            GetModuleFileNameW(nullptr, program, MAX_PATH);
            send_to_bridge(MessageWriter(FromProgram::hello).number(GetCurrentProcessId()).text(program));
            auto welcome = receive_from_bridge();
            if (welcome && welcome->kind() == FromBridge::welcome) {
                start_receiving(
                    [](MessageReader message) {
                        run_on_ui_thread([shared = std::make_shared<MessageReader>(std::move(message))] {
                            handle_bridge_message(*shared);
                        });
                    },
                    [] {
                        run_on_ui_thread([] {
                            MessageReader gone(std::string(1, static_cast<char>(FromBridge::browser_gone)));
                            handle_bridge_message(gone);
                        });
                    });
                return welcome->text();
            }
        }
        return std::wstring();
    }();
    return outcomes.empty() ? environment_variable(L"ORVANTA_WEBVIEW2_OUTCOMES") : outcomes;
}

void complete(const EnvironmentHandler& handler, bool is_success) {
    if (!is_success) {
        handler.invoke(E_FAIL, static_cast<ICoreWebView2Environment*>(nullptr));
        return;
    }
    ICoreWebView2Environment* const environment = new Environment();
    handler.invoke(S_OK, environment);
    environment->Release();
}

} // namespace

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE CreateWebViewEnvironmentWithOptionsInternal(
    bool check_running_instance, int runtime_type, PCWSTR user_data_folder, IUnknown* options,
    ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler* handler) {
    const HRESULT apartment = check_apartment();
    if (FAILED(apartment)) {
        record_trouble(L"the thread's apartment is wrong: " + hex_text(apartment));
        return apartment;
    }
    if (handler == nullptr) {
        return E_POINTER;
    }
    adopt_ui_thread();
    const Outcome outcome = next_outcome(outcomes_of_bridge());
    record_creation(check_running_instance, runtime_type, user_data_folder, options);
    if (!is_on_ui_thread(L"CreateWebViewEnvironmentWithOptionsInternal")) {
        return RPC_E_WRONG_THREAD;
    }
    if (outcome == Outcome::refuse) {
        return E_FAIL;
    }
    auto completed = std::make_shared<EnvironmentHandler>(
        handler, IID_ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler,
        L"ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler");
    if (!*completed) {
        return E_NOINTERFACE;
    }
    const bool is_success = outcome == Outcome::later || outcome == Outcome::inside;
    if (outcome == Outcome::inside || outcome == Outcome::fail_inside) {
        complete(*completed, is_success);
    } else {
        run_on_ui_thread([completed, is_success] { complete(*completed, is_success); });
    }
    return S_OK;
}

BOOL WINAPI DllMain(HINSTANCE /*module*/, DWORD reason, LPVOID /*reserved*/) {
    if (reason == DLL_PROCESS_DETACH) {
        // A program that ends in good order has let go of everything before; one that ends at once never
        // comes here.
        const std::wstring living = living_objects();
        record_note(L"the process ends");
        if (!living.empty()) {
            record_trouble(L"not released at the end of the process: " + living);
        }
    }
    return TRUE;
}
