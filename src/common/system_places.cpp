#include "common/system_places.h"

#include <windows.h>
#include <shlobj.h>

std::wstring running_program_path() {
    // The system ends the text with a NUL, also one that it has cut off.
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return path;
}

std::wstring program_files_dir() {
    return shell_folder(CSIDL_PROGRAM_FILES);
}

std::wstring shell_folder(int csidl) {
    wchar_t path[MAX_PATH] = {};
    // What a failed call leaves in the buffer is nobody's folder.
    return SUCCEEDED(SHGetFolderPathW(nullptr, csidl, nullptr, 0, path)) ? path : std::wstring();
}
