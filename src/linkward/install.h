#pragma once

#include "common/progress_fn.h"

/// Installs the web-protection product from `g_source_dir`: files, service, native messaging host, uninstall
/// entry. What a removal has left to the next start of Windows stays, too. Every step runs whatever the
/// earlier ones returned. Returns whether files and service succeeded. Blocks for seconds when there was a
/// service before; not for the window's thread.
bool install_linkward(const ProgressFn& progress);
