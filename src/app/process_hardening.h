#pragma once

/// Restricts where DLLs are loaded from to the system folder, and takes the current folder out of the search
/// for the commands that cmd.exe runs for us. The program is started, elevated, from Downloads folders, where
/// anybody may have put a DLL or a schtasks.exe. Call it before anything else.
void restrict_search_paths();
