#pragma once

#include <string>

/// Places that the system names.

/// Full path of the running program, as GetModuleFileNameW gives it into 260 characters; a longer path is cut
/// off after 259.
std::wstring running_program_path();

/// The Program Files folder, without a final backslash; empty when the shell cannot tell.
std::wstring program_files_dir();

/// Any folder that the shell knows by a CSIDL number; empty when the shell cannot tell.
std::wstring shell_folder(int csidl);
