#pragma once

#include <string>

#include "results.h"

/// For people: one line for each step and area, below it whatever is different, at the end what Wine cannot
/// give.
std::wstring result_table(const Results& results);
