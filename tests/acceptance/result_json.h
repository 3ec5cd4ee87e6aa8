#pragma once

#include <string>

#include "results.h"

/// The report for programs: one JSON object, UTF-8, one line for each step. Fields of the whole: `outcome`
/// ("as expected" or "different"), `program`, `program_sha256`, `windows`, `wine` (null on Windows),
/// `counts`, `steps`; of a step: `name`, `command`, `duration_ms`, `rows`; of a row: `area`, `what`,
/// `outcome` ("as expected", "different", "not on Wine"), `expected` and `found` (null: nothing), `reason`
/// (on Wine alone).
std::string result_json(const Results& results);
