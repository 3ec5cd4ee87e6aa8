#include "result_table.h"

#include <map>

#include "text_forms.h"

namespace {

constexpr size_t step_width = 44;
constexpr size_t area_width = 20;

std::wstring or_nothing(const std::optional<std::wstring>& value) {
    return value ? *value : L"nothing";
}

std::wstring difference(const Row& row) {
    const std::wstring indent(4, L' ');
    return indent + L"DIFFERENT  " + row.what + L"\n" + indent + L"  expected " + or_nothing(row.expected) +
           L"\n" + indent + L"  found    " + or_nothing(row.found) + L"\n";
}

std::wstring lines_of(const StepResult& step) {
    std::map<std::wstring, std::vector<Row>> areas;
    for (const Row& row : step.rows) {
        areas[row.area].push_back(row);
    }
    std::wstring lines;
    for (const auto& [area, rows] : areas) {
        lines += padded(lines.empty() ? step.name : L"", step_width) + padded(area, area_width) +
                 counts_text(rows) + L"\n";
        for (const Row& row : rows) {
            if (row.outcome == Outcome::different) {
                lines += difference(row);
            }
        }
    }
    return lines;
}

} // namespace

std::wstring result_table(const Results& results) {
    std::wstring table = padded(L"Step", step_width) + padded(L"What", area_width) + L"Outcome\n" +
                         std::wstring(step_width + area_width + 16, L'-') + L"\n";
    std::map<std::wstring, std::wstring> reasons;
    for (const StepResult& step : results.steps) {
        table += lines_of(step);
        for (const Row& row : step.rows) {
            if (row.outcome == Outcome::not_on_wine) {
                reasons[row.area + L", " + row.what] = row.reason;
            }
        }
    }
    if (!reasons.empty()) {
        table += L"\nNot on Wine, and therefore neither as expected nor different:\n";
    }
    for (const auto& [what, reason] : reasons) {
        table += L"  " + what + L": " + reason + L"\n";
    }
    return table;
}
