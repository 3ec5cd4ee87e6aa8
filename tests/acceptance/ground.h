// What a machine holds before anything is installed, and what an acceptance must leave as it was.
#pragma once

#include <string>
#include <vector>

#include "facts.h"

struct Ground {
    Facts others;                       ///< browser policies, and what browsers keep beside their programs
    std::vector<PendingMove> pending;   ///< what waits for the next start of Windows
    std::vector<std::wstring> may_stay; ///< empty folders and keys that say nothing: those that were there,
                                        ///< and those above the products, which a removal leaves
};

Ground ground_of(const MachineState& state);

/// What of a machine belongs to the two products, one line each; empty on a machine that has neither.
std::vector<std::wstring> traces_of_products(const MachineState& state);

/// The facts of a machine. What the ground has as well and tells nothing of the products is left out or said
/// in one sentence. Reads the files of the products.
Facts found_facts(const MachineState& state, const Ground& ground);

/// What is said of everything else, as long as it is as it was.
void add_untouched_facts(Facts& facts, const Ground& ground);
