#pragma once

/// Closes browsers and installs both products from `g_source_dir` without a window. Returns the exit code: 0
/// when both were installed, else 1.
int run_windowless_install();

/// Closes browsers and removes both products without a window. Returns the exit code, 0.
int run_windowless_uninstall();
