#pragma once

#include <windows.h>

/// Thread function: removes both products, whatever is installed, and tells the page about every step.
/// Returns 0; an exception ends the process.
DWORD WINAPI uninstall_thread_proc(void* unused) noexcept;
