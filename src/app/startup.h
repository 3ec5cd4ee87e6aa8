#pragma once

#include <windows.h>

/// The story of one run, from the command line to the exit code: hardens the process, chooses the source
/// folder, asks whether the process is elevated, and either starts a second instance or does what the options
/// ask for. An exception ends the process.
int run_installer(HINSTANCE instance) noexcept;
