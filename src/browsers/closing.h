#pragma once

#include "common/progress_fn.h"

/// Ends every running process of a known browser (Firefox is none) and reports how many there were. Waits up
/// to 3 s for each process and, when at least one was closed, another 1.5 s. Returns the number of processes
/// closed; processes that may not be opened or ended are passed over. A machine whose processes cannot be
/// listed counts as zero, without a report.
int close_browsers(const ProgressFn& progress);
