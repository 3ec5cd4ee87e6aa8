#include "webview2/host_program.h"

#include <windows.h>

std::wstring host_program_path() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

std::wstring host_program_folder() {
    const std::wstring program = host_program_path();
    return program.substr(0, program.rfind(L'\\') + 1);
}
