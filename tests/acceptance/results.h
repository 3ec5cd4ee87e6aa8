// What an acceptance has found.
#pragma once

#include <string>
#include <vector>

#include "comparison.h"

struct StepResult {
    std::wstring name;
    std::wstring command; ///< the command line that was run
    unsigned long long duration_ms = 0;
    std::vector<Row> rows;
};

struct Results {
    std::wstring program;
    std::string program_sha256;
    std::vector<StepResult> steps;
};

size_t count_of(const std::vector<Row>& rows, Outcome outcome);
size_t count_of(const Results& results, Outcome outcome);

/// The outcome in words: "as expected", "different", "not on Wine".
const wchar_t* outcome_text(Outcome outcome);

/// "12 as expected, 1 different", what does not occur left out.
std::wstring counts_text(const std::vector<Row>& rows);
