#pragma once

#include "common/progress_fn.h"

/// Removes everything of the web-protection product from the machine: service, registrations, extension
/// policies of every browser, files and data. Program files in use go at the next start of the system, data
/// files in use stay. Every step runs whatever happened before it. Always returns 0. Blocks for 2 s when
/// there is a service.
int uninstall_linkward(const ProgressFn& progress);
