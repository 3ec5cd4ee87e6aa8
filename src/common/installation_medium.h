#pragma once

#include <string>

/// The folder that holds the product files to install, as the user or the program's own path names it.
/// Written by the start-up before anything reads it; read by the install sequences on whatever thread they
/// run. Never destroyed: a worker may still read it while the process ends.
extern std::wstring& g_source_dir;

/// The same folder for file calls: a drive letter alone means the root of that drive, where Windows would
/// take it for the drive's current folder, which may be anybody's.
std::wstring install_source_dir();

/// The hardening console's files in it. The web protection, which installs from the same folder, leaves them
/// out.
inline constexpr wchar_t fwc_program_name[] = L"Fortwright.exe";
inline constexpr wchar_t fwc_loader_name[] = L"WebView2Loader.dll";
