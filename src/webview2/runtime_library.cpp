#include "webview2/runtime_library.h"

namespace {

// The runtime's only entry, documented by Microsoft for loaders.
constexpr const char* entry_name = "CreateWebViewEnvironmentWithOptionsInternal";
using RuntimeEntry = HRESULT(STDAPICALLTYPE*)(
    bool check_running_instance, int runtime_type, PCWSTR user_data_folder, IUnknown* options,
    ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler* handler);

// Lets the runtime hand over to another version that already runs on the same user data folder.
constexpr bool check_running_instance = true;

HRESULT last_error_result() {
    return HRESULT_FROM_WIN32(GetLastError());
}

} // namespace

HRESULT create_environment_with(const std::wstring& dll_path, RuntimeType type, PCWSTR user_data_folder,
                                IUnknown* options,
                                ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler* handler) {
    // The program restricts DLL loading to the system folder; the runtime's neighbours lie beside it.
    const HMODULE runtime = LoadLibraryExW(dll_path.c_str(), nullptr,
                                           LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (runtime == nullptr) {
        return last_error_result();
    }
    // Never freed, whatever follows: threads and callbacks of the runtime live as long as the process.
    const FARPROC entry = GetProcAddress(runtime, entry_name);
    if (entry == nullptr) {
        return last_error_result(); // cppcheck-suppress resourceLeak
    }
    const auto create_environment = reinterpret_cast<RuntimeEntry>(reinterpret_cast<void (*)()>(entry));
    // cppcheck-suppress resourceLeak
    return create_environment(check_running_instance, static_cast<int>(type), user_data_folder, options,
                              handler);
}
