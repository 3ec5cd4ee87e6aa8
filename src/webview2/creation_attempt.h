#pragma once

#include <optional>
#include <string>

#include "common/com_object.h"
#include "common/com_ptr.h"
#include "webview2/event_interfaces.h"

/// One request for an environment. It stands between the runtime and the caller's handler so that a
/// failed start can be tried once more: an update that replaces the runtime just then is over the next
/// time. A refusal and a failure that is told later do not use up each other's second try. Lives until the
/// runtime lets go of it.
class CreationAttempt final
    : public ComObject<CreationAttempt, ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler> {
  public:
    /// Texts and options may be null. Keeps a reference to options and handler.
    CreationAttempt(PCWSTR browser_executable_folder, PCWSTR user_data_folder, IUnknown* options,
                    ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler* handler);

    /// Finds, loads and calls the runtime; at once a second time when that fails. Returns whether the
    /// creation has begun; only then is the caller's handler called, now or later.
    HRESULT start();

    HRESULT STDMETHODCALLTYPE Invoke(HRESULT result, ICoreWebView2Environment* environment) noexcept override;

  private:
    HRESULT find_and_call();
    void deliver(HRESULT result, ICoreWebView2Environment* environment);

    std::wstring browser_executable_folder_;
    std::optional<std::wstring> user_data_folder_;
    ComPtr<IUnknown> options_;
    ComPtr<ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler> handler_;
    bool may_retry_ = true; // after a failure that the runtime has told
};
