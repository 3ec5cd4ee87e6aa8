#include "common/program_path.h"

#include <windows.h>

std::filesystem::path running_program_path() {
    wchar_t path[MAX_PATH] = {};
    const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::wstring(path, length);
}
