#include "result_json.h"

#include "json_text.h"
#include "this_system.h"

namespace {

std::string text_json(const std::wstring& text) {
    return json_string(text);
}

std::string row_json(const Row& row) {
    const std::string reason = row.outcome == Outcome::not_on_wine ? json_string(row.reason) : "null";
    return json_object({{"area", json_string(row.area)},
                        {"what", json_string(row.what)},
                        {"outcome", json_string(std::wstring_view(outcome_text(row.outcome)))},
                        {"expected", json_or_null(row.expected, text_json)},
                        {"found", json_or_null(row.found, text_json)},
                        {"reason", reason}});
}

std::string step_json(const StepResult& step) {
    return "\n" + json_object({{"name", json_string(step.name)},
                               {"command", json_string(step.command)},
                               {"duration_ms", std::to_string(step.duration_ms)},
                               {"rows", json_list(step.rows, row_json)}});
}

} // namespace

std::string result_json(const Results& results) {
    const auto count = [&](Outcome outcome) { return std::to_string(count_of(results, outcome)); };
    const std::wstring wine = wine_version();
    const bool is_different = count_of(results, Outcome::different) > 0;
    return json_object({{"outcome", json_string(std::wstring_view(outcome_text(
                                        is_different ? Outcome::different : Outcome::as_expected)))},
                        {"program", json_string(results.program)},
                        {"program_sha256", json_string(std::string_view(results.program_sha256))},
                        {"windows", json_string(windows_version())},
                        {"wine", wine.empty() ? "null" : json_string(wine)},
                        {"counts", json_object({{"as_expected", count(Outcome::as_expected)},
                                                {"different", count(Outcome::different)},
                                                {"not_on_wine", count(Outcome::not_on_wine)}})},
                        {"steps", json_list(results.steps, step_json)}}) +
           "\n";
}
