#pragma once

/// Restricts where DLLs are loaded from to the system folder, and takes the current folder out of the search
/// for the commands that cmd.exe runs for us. The program is started, elevated, from Downloads folders, where
/// anybody may have put a DLL or a schtasks.exe. Call it before anything else.
void restrict_search_paths();

/// Makes an exception that nobody catches end the process at once with exit_code_unhandled, without a dialog.
void end_quietly_on_unhandled_exceptions();

/// Exit code of a process that an unhandled exception has ended.
inline constexpr unsigned exit_code_unhandled = 3;
