#pragma once

#include <windows.h>

#include "app/command_line.h"

/// Closes browsers and installs both products from `g_source_dir` without a window. Returns the exit code: 0
/// when both were installed, else 1.
int run_windowless_install();

/// Closes browsers and removes both products without a window. Returns the exit code, 0.
int run_windowless_uninstall();

/// Opens the installer window and returns the exit code, 0, when it has been closed.
int run_window(HINSTANCE instance);

/// Runs what the options ask for in an elevated process and returns the exit code. Removal goes before
/// installation, both before the window.
int run_elevated(HINSTANCE instance, const Options& options);
