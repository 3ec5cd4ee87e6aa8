// What is done to the machine, step by step.
#pragma once

#include <functional>

#include "ground.h"
#include "kit.h"
#include "options.h"
#include "results.h"

/// Goes through all steps, whatever their outcomes, and ends with a removal. `tell` hears of each step when
/// it begins and when it has been judged. Needs COM on the thread. Throws std::runtime_error when it cannot
/// begin.
Results run_steps(const Kit& kit, const AcceptanceOptions& options, const MachineState& before,
                  const std::function<void(const std::wstring&)>& tell);
