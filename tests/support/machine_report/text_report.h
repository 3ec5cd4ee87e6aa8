#pragma once

#include "machine_state.h"

/// The report for people: headings, aligned columns, lines ended by LF.
std::wstring text_report(const MachineState& state);
