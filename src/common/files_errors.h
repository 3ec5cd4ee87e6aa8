#pragma once

#include <filesystem>
#include <system_error>

/// For the files of this folder: what the functions of files.h throw.

/// The category of Win32 error numbers; its texts are the system's, in UTF-8, on one line. (The standard
/// library of MinGW takes the numbers for errno values, and some of Windows' texts hold line breaks, which a
/// report to the page cannot carry.)
const std::error_category& win32_category();

/// Throws std::filesystem::filesystem_error for a Win32 error number.
[[noreturn]] void throw_file_error(const char* operation, unsigned long error,
                                   const std::filesystem::path& path);
[[noreturn]] void throw_file_error(const char* operation, unsigned long error,
                                   const std::filesystem::path& from, const std::filesystem::path& to);

/// Whether a Win32 error number means that there is nothing at a path.
bool is_not_found(unsigned long error);
