#include "common/quiet_thread.h"

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

void make_thread_quiet() noexcept {
    std::set_terminate(end_process);
    // Cannot fail with these two, which are all that concern files and drives.
    SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, nullptr);
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
