#pragma once

#include <string>

/// The full path of the running EXE, however long it is.
std::wstring host_program_path();

/// Its folder, ending in a backslash.
std::wstring host_program_folder();
