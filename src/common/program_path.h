#pragma once

#include <string>

/// Full path of the running program, as GetModuleFileNameW gives it into 260 characters; a longer path is cut
/// off after 259.
std::wstring running_program_path();
