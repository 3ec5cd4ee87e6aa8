#include "app/process_hardening.h"

#include <cstdlib>
#include <exception>
#include <windows.h>

namespace {

/// The C run-time's own way out may show a message box and wait for someone to close it.
[[noreturn]] void end_process() {
    TerminateProcess(GetCurrentProcess(), exit_code_unhandled);
    // Not reached, but the compiler does not know that.
    std::_Exit(exit_code_unhandled);
}

} // namespace

void restrict_search_paths() {
    // Results are ignored: a system that lacks one of these has the defaults that it came with.
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
    SetDllDirectoryW(L"");
    SetSearchPathMode(BASE_SEARCH_PATH_ENABLE_SAFE_SEARCHMODE | BASE_SEARCH_PATH_PERMANENT);
    // Windows' own switch, which cmd.exe inherits; any text will do.
    SetEnvironmentVariableW(L"NoDefaultCurrentDirectoryInExePath", L"1");
}

void end_quietly_on_unhandled_exceptions() {
    std::set_terminate(end_process);
}

#ifdef __GLIBCXX__
namespace __gnu_cxx {

// The library's own terminate handler prints the exception's type and for that brings in a demangler of
// 70 kB. This definition takes its place in the link.
// NOLINTNEXTLINE: the name is the library's.
void __verbose_terminate_handler() {
    end_process();
}

} // namespace __gnu_cxx
#endif
