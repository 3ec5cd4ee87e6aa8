#pragma once

#include "common/progress_fn.h"

/// Writes the native messaging host's manifests into the install folder and registers them for every known
/// browser, installed or not, and for Firefox. Failures are passed over in silence; the one report only says
/// that the step ran.
void register_native_messaging_hosts(const ProgressFn& progress);

/// Removes the registrations of every known browser and of Firefox, and reports it. The manifests go with the
/// install folder.
void remove_native_messaging_hosts(const ProgressFn& progress);
