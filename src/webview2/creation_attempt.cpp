#include "webview2/creation_attempt.h"

#include "webview2/machine_policies.h"
#include "webview2/runtime_library.h"
#include "webview2/runtime_search.h"

#include <utility>

CreationAttempt::CreationAttempt(PCWSTR browser_executable_folder, PCWSTR user_data_folder, IUnknown* options,
                                 ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler* handler)
    : browser_executable_folder_(browser_executable_folder == nullptr ? L"" : browser_executable_folder),
      options_(options), handler_(handler) {
    if (user_data_folder != nullptr) {
        user_data_folder_ = user_data_folder;
    }
    if (options_ != nullptr) {
        options_->AddRef();
    }
    handler_->AddRef();
}

CreationAttempt::~CreationAttempt() {
    if (options_ != nullptr) {
        options_->Release();
    }
    handler_->Release();
}

HRESULT CreationAttempt::start() {
    const HRESULT result = find_and_call();
    return FAILED(result) ? find_and_call() : result;
}

HRESULT CreationAttempt::find_and_call() {
    // What an administrator has set for this machine wins over what the program asks for, an empty text too:
    // then the installed runtime, and a folder of the runtime's own choice.
    const std::wstring fixed_folder = machine_policy(L"BrowserExecutableFolder", PolicyScope::any_program)
                                          .value_or(browser_executable_folder_);
    std::optional<std::wstring> user_data_folder =
        machine_policy(L"UserDataFolder", PolicyScope::this_program_only);
    if (!user_data_folder) {
        user_data_folder = user_data_folder_;
    } else if (user_data_folder->empty()) {
        user_data_folder.reset();
    }

    std::wstring dll;
    if (!fixed_folder.empty()) {
        dll = find_fixed_runtime_dll(fixed_folder);
    } else if (is_stable_channel_allowed(
                   machine_policy(L"ReleaseChannels", PolicyScope::any_program).value_or(L""))) {
        dll = find_installed_runtime_dll();
    }
    if (dll.empty()) {
        return HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
    }
    // A null folder stays null: the runtime then chooses its own.
    return create_environment_with(dll,
                                   fixed_folder.empty() ? RuntimeType::installed : RuntimeType::fixed_folder,
                                   user_data_folder ? user_data_folder->c_str() : nullptr, options_, this);
}

HRESULT CreationAttempt::Invoke(HRESULT result, ICoreWebView2Environment* environment) noexcept {
    if (FAILED(result) && std::exchange(may_retry_, false)) {
        result = find_and_call();
        if (SUCCEEDED(result)) {
            return S_OK; // the new start calls again
        }
        environment = nullptr;
    }
    deliver(result, environment);
    return S_OK;
}

/// Asks for the interface by its id rather than trusting the pointer, as Microsoft's loader does.
void CreationAttempt::deliver(HRESULT result, ICoreWebView2Environment* environment) {
    void* asked = nullptr;
    if (environment != nullptr) {
        result = environment->QueryInterface(IID_ICoreWebView2Environment, &asked);
    }
    auto* const handed_over = static_cast<ICoreWebView2Environment*>(asked);
    // What the program's handler returns means nothing to the runtime.
    handler_->Invoke(result, handed_over);
    if (handed_over != nullptr) {
        handed_over->Release();
    }
}

HRESULT CreationAttempt::QueryInterface(REFIID iid, void** object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler) {
        return E_NOINTERFACE;
    }
    *object = static_cast<ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler*>(this);
    AddRef();
    return S_OK;
}

ULONG CreationAttempt::AddRef() {
    return ++references_;
}

ULONG CreationAttempt::Release() {
    const ULONG left = --references_;
    if (left == 0) {
        delete this;
    }
    return left;
}
