#include "comparison.h"

#include <algorithm>

#include "this_system.h"

namespace {

constexpr const wchar_t* areas[] = {
    L"files",       L"uninstall entries", L"native messaging",  L"browser policies", L"service",
    L"update task", L"shortcut",          L"at the next start", L"empty places"};

std::optional<std::wstring> value_of(const Facts& facts, const FactName& name) {
    const auto place = facts.find(name);
    return place == facts.end() ? std::nullopt : std::optional(place->second);
}

Row judged(const FactName& name, const Facts& expected, const Facts& found, const Facts& not_given) {
    Row row = {name.first, name.second, value_of(expected, name), value_of(found, name), {}, {}};
    const std::optional<std::wstring> reason = value_of(not_given, name);
    if (reason && row.expected) {
        row.outcome = Outcome::not_on_wine;
        row.reason = *reason;
    } else {
        row.outcome = row.expected == row.found ? Outcome::as_expected : Outcome::different;
    }
    return row;
}

} // namespace

Facts not_on_wine() {
    if (!is_wine()) {
        return {};
    }
    const std::wstring actions = L"restart actions are accepted, but neither stored nor returned";
    return {
        {{L"service", L"after a failure"}, actions},
        {{L"service", L"reset period"}, actions},
        {{L"update task", L"in Task Scheduler"}, L"schtasks.exe is a recorder; what it was told is judged"},
    };
}

std::vector<Row> compare(const Facts& expected, const Facts& found, const Facts& not_given) {
    Facts all = expected;
    all.insert(found.begin(), found.end());
    std::vector<Row> rows;
    for (const auto& [name, value] : all) {
        rows.push_back(judged(name, expected, found, not_given));
    }
    for (const wchar_t* const area : areas) {
        if (std::none_of(all.begin(), all.end(),
                         [&](const auto& fact) { return fact.first.first == area; })) {
            rows.push_back({area, L"all", L"nothing", L"nothing", Outcome::as_expected, {}});
        }
    }
    return rows;
}
