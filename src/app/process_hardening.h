#pragma once

/// Restricts where DLLs are loaded from to the system folder. The program is started, elevated, from
/// Downloads folders, where anybody may have put a DLL. Call it before anything else.
void restrict_dll_search();

/// Makes an exception that nobody catches end the process at once with exit_code_unhandled, without a dialog.
void end_quietly_on_unhandled_exceptions();

/// Exit code of a process that an unhandled exception has ended.
inline constexpr unsigned exit_code_unhandled = 3;
