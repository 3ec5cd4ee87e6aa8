#pragma once

#include "common/progress_fn.h"

/// Removes the hardening console: update task, shortcut, uninstall entry, files. Every step is best effort
/// and reports success. Always returns true. May wait 10 s for the task scheduler.
bool uninstall_fwc(const ProgressFn& progress);
