// What is expected against what was found.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "facts.h"

enum class Outcome {
    as_expected,
    different,
    not_on_wine, ///< Wine cannot give it: neither as expected nor different
};

struct Row {
    std::wstring area;
    std::wstring what;
    std::optional<std::wstring> expected; ///< nothing: it must not be there
    std::optional<std::wstring> found;    ///< nothing: it is not there
    Outcome outcome = Outcome::different;
    std::wstring reason; ///< why Wine cannot give it
};

/// What Wine does not give, with the reason for each. Empty on Windows.
Facts not_on_wine();

/// One row for everything that is expected or was found, in the order of names, and one for each area of
/// which nothing is expected and nothing was found. What is in `not_given` is not judged where it is
/// expected; where it is not, it must not be there all the same.
std::vector<Row> compare(const Facts& expected, const Facts& found, const Facts& not_given);
