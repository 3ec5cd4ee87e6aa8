#include "webview2/runtime_search.h"

#include "common/owned.h"
#include "webview2/host_program.h"
#include "webview2/registry_text.h"
#include "webview2/runtime_version.h"

namespace {

// Edge's updater registers every runtime with its version folder, in the 32-bit view.
constexpr const wchar_t* stable_runtime_key =
    L"Software\\Microsoft\\EdgeUpdate\\ClientState\\{F3017226-FE2A-4295-8BDF-00C3A9A7E4C5}";
constexpr const wchar_t* version_folder_value = L"EBWebView";

#if defined(_M_ARM64) || defined(__aarch64__)
constexpr const wchar_t* dll_in_version_folder = L"\\EBWebView\\arm64\\EmbeddedBrowserWebView.dll";
#elif defined(_WIN64)
constexpr const wchar_t* dll_in_version_folder = L"\\EBWebView\\x64\\EmbeddedBrowserWebView.dll";
#else
constexpr const wchar_t* dll_in_version_folder = L"\\EBWebView\\x86\\EmbeddedBrowserWebView.dll";
#endif

/// Whether the file is there and this process may load it.
bool is_loadable_file(const std::wstring& path) {
    return static_cast<bool>(OwnedFile(CreateFileW(path.c_str(), FILE_READ_DATA | FILE_EXECUTE | SYNCHRONIZE,
                                                   FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                                   nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)));
}

std::wstring runtime_dll_below(std::wstring folder) {
    folder += dll_in_version_folder;
    return is_loadable_file(folder) ? folder : std::wstring();
}

bool is_full_path(std::wstring_view path) {
    if (path.starts_with(L"\\\\")) {
        return true;
    }
    const wchar_t drive = path.empty() ? L'\0' : static_cast<wchar_t>(path[0] | 0x20);
    return drive >= L'a' && drive <= L'z' && path.substr(1).starts_with(L":\\");
}

} // namespace

std::wstring find_installed_runtime_dll() {
    for (HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
        const std::wstring folder =
            read_registry_text(root, stable_runtime_key, KEY_WOW64_32KEY, version_folder_value);
        if (is_supported_version_folder(folder)) {
            std::wstring dll = runtime_dll_below(folder);
            if (!dll.empty()) {
                return dll;
            }
        }
    }
    return {};
}

std::wstring find_fixed_runtime_dll(std::wstring_view folder) {
    std::wstring path = is_full_path(folder) ? std::wstring() : host_program_folder();
    path += folder;
    return runtime_dll_below(path);
}
