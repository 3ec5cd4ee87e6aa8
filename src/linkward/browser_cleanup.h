#pragma once

#include "common/progress_fn.h"

/// Takes the browser extension, under every id that it ever had, out of the policies of every known browser,
/// and reports it. What cannot be cleaned is passed over.
void clean_browser_policies(const ProgressFn& progress);

/// Takes the extension out of Firefox: the policy key, with the add-ons that other products listed there, and
/// the entry in its distribution folder. Silent; what cannot be removed stays.
void clean_firefox();
