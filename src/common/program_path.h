#pragma once

#include <filesystem>

/// Full path of the running program, as GetModuleFileNameW gives it into 260 characters (a longer path is
/// cut off).
std::filesystem::path running_program_path();
