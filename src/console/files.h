#pragma once

#include "common/progress_fn.h"

/// Makes the console's folder and copies its files from `g_source_dir`, and the running installer as updater.
/// Returns false, after one report, when the folder could not be made or the main program not be copied.
bool deploy_fwc_files(const ProgressFn& progress);

/// Removes the console's folder with everything in it and reports it; what is in use goes at the next start
/// of the system.
void remove_fwc_files(const ProgressFn& progress);
