#pragma once

#include <vector>

#include <windows.h>

#include "browsers/detection.h"

/// The user's choice of products. Written by the window's thread before it starts a run, read once at the
/// start of the run.
extern bool g_install_console;
extern bool g_install_linkward;

/// What the last run found; the page names a browser by its position here. Written by the run before it posts
/// the list to the page, read by the window's thread only after the page has received it. Never destroyed: a
/// run may still write it while the process ends.
extern std::vector<DetectedBrowser>& g_detected_browsers;

/// Thread function: installs the chosen products from `g_source_dir` and tells the page about every step.
/// Failures of a product are reported and the run goes on. Returns 0; an exception ends the process.
DWORD WINAPI install_thread_proc(void* unused) noexcept;
