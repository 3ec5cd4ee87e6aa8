#pragma once

#include <windows.h>

#include "app/command_line.h"

/// Opens the installer window and returns the exit code, 0, when it has been closed.
int run_window(HINSTANCE instance);

/// Runs what the options ask for in an elevated process and returns the exit code. Removal goes before
/// installation, both before the window.
int run_elevated(HINSTANCE instance, const Options& options);
