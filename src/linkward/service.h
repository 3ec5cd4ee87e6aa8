#pragma once

#include "common/progress_fn.h"

/// Registers the product's service anew, removing an earlier one first, and starts it. Reports the outcome.
/// Returns false when the service control manager could not be opened or the service could not be created; a
/// service that does not start counts as installed. Waits up to 6 s when there was a service before.
bool register_linkward_service(const ProgressFn& progress);

/// Stops and deletes the product's service when there is one, with 2 s in between, and reports that it is
/// gone, whatever happened.
void remove_linkward_service(const ProgressFn& progress);
