#include "app/process_hardening.h"

#include <windows.h>

void restrict_search_paths() {
    // Results are ignored: a system that lacks one of these has the defaults that it came with.
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
    SetDllDirectoryW(L"");
    SetSearchPathMode(BASE_SEARCH_PATH_ENABLE_SAFE_SEARCHMODE | BASE_SEARCH_PATH_PERMANENT);
    // Windows' own switch, which cmd.exe inherits; any text will do.
    SetEnvironmentVariableW(L"NoDefaultCurrentDirectoryInExePath", L"1");
}
