#pragma once

#include <string>

#include <windows.h>

/// Carries out one command line (UTF-8) and prints the result.
void run_command(HWND window, const std::string& line);
