#include "webview2/loader.h"

#include <new>

#include "webview2/creation_attempt.h"

// NOLINTBEGIN(readability-identifier-naming): Microsoft's signature, to the letter.

HRESULT STDAPICALLTYPE CreateCoreWebView2EnvironmentWithOptions(
    PCWSTR browserExecutableFolder, PCWSTR userDataFolder,
    ICoreWebView2EnvironmentOptions* environmentOptions,
    ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler* environmentCreatedHandler) {
    if (environmentCreatedHandler == nullptr) {
        return E_POINTER;
    }
    try {
        // The options' interface is not declared here; like every interface it begins with IUnknown.
        ComPtr<CreationAttempt> attempt;
        attempt.reset(new CreationAttempt(browserExecutableFolder, userDataFolder,
                                          reinterpret_cast<IUnknown*>(environmentOptions),
                                          environmentCreatedHandler));
        return attempt->start();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

// NOLINTEND(readability-identifier-naming)
