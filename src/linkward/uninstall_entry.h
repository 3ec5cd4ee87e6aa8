#pragma once

#include "common/progress_fn.h"

/// Lists the product in Add/Remove Programs; its commands start the installer copy in the install folder.
/// Values that cannot be written are passed over. Always returns true.
bool register_linkward_arp(const ProgressFn& progress);

/// Takes it off the list in silence, whether or not it was there.
void remove_linkward_arp();
