// What the compiler's stack protection needs at run time, in the place of its own library: that one draws its
// value from the cryptographic service provider, whose three DLLs every start would load before the program
// can say where DLLs may come from.
#include <cstdint>

#include <windows.h>

namespace {

std::uintptr_t unpredictable_value() {
    LARGE_INTEGER counter = {};
    QueryPerformanceCounter(&counter);
    FILETIME now = {};
    GetSystemTimePreciseAsFileTime(&now);
    // Mixes in a number that the system drew for this process alone, and where it put the stack.
    const auto drawn = reinterpret_cast<std::uintptr_t>(EncodePointer(&counter));
    return drawn ^ (static_cast<std::uintptr_t>(counter.QuadPart) << 24) ^
           (static_cast<std::uintptr_t>(now.dwLowDateTime) << 32) ^
           static_cast<std::uintptr_t>(GetCurrentThreadId());
}

} // namespace

// Under the names that the compiler knows them by.
extern "C" {

/// Stands between the local variables and the return address of every protected function.
std::uintptr_t g_stack_guard asm("__stack_chk_guard") = 0;

[[noreturn]] void end_overrun_process() asm("__stack_chk_fail");

/// Ends the process at once: nothing on this stack is to be trusted any more, exception handlers included.
void end_overrun_process() {
    // What __fastfail does, which not every version of the headers has.
    asm volatile("int $0x29" : : "c"(FAST_FAIL_STACK_COOKIE_CHECK_FAILURE));
    __builtin_unreachable();
}
}

namespace {

// Before every other constructor of ours: a function that is at work meanwhile would find another value than
// it put down.
__attribute__((constructor(101))) void draw_stack_guard() {
    // The lowest byte is zero, so that no text that runs over can hold the value.
    g_stack_guard = unpredictable_value() & ~static_cast<std::uintptr_t>(0xff);
}

} // namespace
