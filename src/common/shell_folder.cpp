#include "common/shell_folder.h"

#include <windows.h>

#include <shlobj.h>

std::wstring program_files_dir() {
    return shell_folder(CSIDL_PROGRAM_FILES);
}

std::wstring shell_folder(int csidl) {
    wchar_t path[MAX_PATH] = {};
    // A failed call leaves the buffer empty, and the empty text is the answer.
    SHGetFolderPathW(nullptr, csidl, nullptr, 0, path);
    return path;
}
