#pragma once

#include "common/progress_fn.h"

/// Puts a shortcut to the console on the user's desktop and reports whether it is there. Uses COM on the
/// calling thread and leaves it as it was.
void create_desktop_shortcut(const ProgressFn& progress);

/// Deletes the shortcut and reports it, whether or not there was one.
void remove_desktop_shortcut(const ProgressFn& progress);
