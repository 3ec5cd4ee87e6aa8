#pragma once

#include "common/owned.h"

/// A token whose processes are no members of the Administrators group, made of this process's own; empty when
/// Windows refuses.
OwnedHandle make_restricted_token();
