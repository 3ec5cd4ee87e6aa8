#pragma once

#include "machine_state.h"

/// The same facts as one JSON object (UTF-8, one line). What is not there is null or an empty list.
std::string json_report(const MachineState& state);
