#include "results.h"

#include <algorithm>

size_t count_of(const std::vector<Row>& rows, Outcome outcome) {
    return static_cast<size_t>(
        std::count_if(rows.begin(), rows.end(), [&](const Row& row) { return row.outcome == outcome; }));
}

size_t count_of(const Results& results, Outcome outcome) {
    size_t count = 0;
    for (const StepResult& step : results.steps) {
        count += count_of(step.rows, outcome);
    }
    return count;
}

const wchar_t* outcome_text(Outcome outcome) {
    switch (outcome) {
    case Outcome::as_expected:
        return L"as expected";
    case Outcome::not_on_wine:
        return L"not on Wine";
    default:
        return L"different";
    }
}

std::wstring counts_text(const std::vector<Row>& rows) {
    std::wstring text;
    for (const Outcome outcome : {Outcome::as_expected, Outcome::different, Outcome::not_on_wine}) {
        const size_t count = count_of(rows, outcome);
        if (count > 0) {
            text += (text.empty() ? L"" : L", ") + std::to_wstring(count) + L" " + outcome_text(outcome);
        }
    }
    return text;
}
