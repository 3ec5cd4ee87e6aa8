#include "webview2/creation_attempt.h"

#include <utility>

#include "webview2/machine_policies.h"
#include "webview2/runtime_library.h"
#include "webview2/runtime_search.h"

namespace {

/// A reference of our own to an object of the caller's, which may be null.
template<typename Interface>
ComPtr<Interface> shared(Interface* object) {
    ComPtr<Interface> reference;
    if (object != nullptr) {
        object->AddRef();
        reference.reset(object);
    }
    return reference;
}

} // namespace

CreationAttempt::CreationAttempt(PCWSTR browser_executable_folder, PCWSTR user_data_folder, IUnknown* options,
                                 ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler* handler)
    : ComObject(IID_ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler),
      browser_executable_folder_(browser_executable_folder == nullptr ? L"" : browser_executable_folder),
      options_(shared(options)), handler_(shared(handler)) {
    if (user_data_folder != nullptr) {
        user_data_folder_ = user_data_folder;
    }
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
    return create_environment_with(
        dll, fixed_folder.empty() ? RuntimeType::installed : RuntimeType::fixed_folder,
        user_data_folder ? user_data_folder->c_str() : nullptr, options_.get(), this);
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
    ComPtr<ICoreWebView2Environment> asked;
    if (environment != nullptr) {
        result = environment->QueryInterface(IID_ICoreWebView2Environment, asked.out_void());
    }
    // What the program's handler returns means nothing to the runtime.
    handler_->Invoke(result, asked.get());
}
