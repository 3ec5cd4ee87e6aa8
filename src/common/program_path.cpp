#include "common/program_path.h"

#include <windows.h>

std::wstring running_program_path() {
    // The system ends the text with a NUL, also one that it has cut off.
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return path;
}
