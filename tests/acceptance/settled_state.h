#pragma once

#include <windows.h>

#include "machine_state.h"

/// The state of the machine once the service neither starts nor stops any more, or after `limit_s` seconds.
MachineState read_settled_state(DWORD limit_s);
