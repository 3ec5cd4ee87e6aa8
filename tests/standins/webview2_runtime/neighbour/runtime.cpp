// A runtime that cannot be loaded unless its neighbour is found. It answers every call with S_FALSE + 42
// and never calls the handler.
#include "webview2/interfaces.h"

extern "C" __declspec(dllimport) int orvanta_neighbour_answer();

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE CreateWebViewEnvironmentWithOptionsInternal(
    bool /*check_running_instance*/, int /*runtime_type*/, PCWSTR /*user_data_folder*/, IUnknown* /*options*/,
    ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler* /*handler*/) {
    return S_FALSE + orvanta_neighbour_answer();
}
