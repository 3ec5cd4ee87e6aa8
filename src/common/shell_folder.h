#pragma once

#include <string>

/// The Program Files folder, without a final backslash; empty when the shell cannot tell.
std::wstring program_files_dir();

/// Any folder that the shell knows by a CSIDL number; empty when the shell cannot tell.
std::wstring shell_folder(int csidl);
