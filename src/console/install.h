#pragma once

#include "common/progress_fn.h"

/// Installs the hardening console from `g_source_dir`: files, desktop shortcut, weekly update, uninstall
/// entry. What a removal has left to the next start of Windows stays, too. Returns false, and does nothing
/// further, when its folder could not be made or its program not be copied; everything after that is best
/// effort. May wait 15 s for the task scheduler; not for the window's thread.
bool install_fwc(const ProgressFn& progress);
