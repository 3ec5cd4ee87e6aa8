#pragma once

/// Makes the calling thread one that never asks anybody anything. An exception that nobody catches ends the
/// process at once with exit_code_unhandled, and a critical error ("there is no disk in the drive") goes to
/// the call that met it; neither shows a box that would wait for somebody. Both belong to the thread (with
/// Visual Studio the first one too), so every thread of ours begins with this call. Programs that we start do
/// not inherit it.
void make_thread_quiet() noexcept;

/// Exit code of a process that an unhandled exception has ended.
inline constexpr unsigned exit_code_unhandled = 3;
