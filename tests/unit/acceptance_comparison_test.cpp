#include <doctest/doctest.h>
#include <string>
#include <vector>

#include "comparison.h"
#include "text_forms.h"

namespace {

const Row* row_of(const std::vector<Row>& rows, const std::wstring& area, const std::wstring& what) {
    for (const Row& row : rows) {
        if (row.area == area && row.what == what) {
            return &row;
        }
    }
    return nullptr;
}

Outcome outcome_of(const Facts& expected, const Facts& found, const Facts& not_given = {}) {
    const std::vector<Row> rows = compare(expected, found, not_given);
    const Row* const row = row_of(rows, L"files", L"a");
    REQUIRE(row != nullptr);
    return row->outcome;
}

const Facts one = {{{L"files", L"a"}, L"1"}};
const Facts other = {{{L"files", L"a"}, L"2"}};

} // namespace

TEST_CASE("what is there, missing, too much or another is told apart") {
    CHECK(outcome_of(one, one) == Outcome::as_expected);
    CHECK(outcome_of(one, other) == Outcome::different);
    CHECK(outcome_of(one, {}) == Outcome::different);
    CHECK(outcome_of({}, one) == Outcome::different);

    const std::vector<Row> rows = compare(one, other, {});
    const Row* const row = row_of(rows, L"files", L"a");
    REQUIRE(row != nullptr);
    CHECK(row->expected == L"1");
    CHECK(row->found == L"2");
    CHECK(row->reason == L"");
}

TEST_CASE("what Wine does not give is neither as expected nor different, whatever was found") {
    const Facts reason = {{{L"files", L"a"}, L"because"}};
    CHECK(outcome_of(one, one, reason) == Outcome::not_on_wine);
    CHECK(outcome_of(one, other, reason) == Outcome::not_on_wine);
    CHECK(outcome_of(one, {}, reason) == Outcome::not_on_wine);
    CHECK(compare(one, {}, reason).front().reason == L"because");
}

TEST_CASE("what Wine does not give must not be there where nothing is expected") {
    CHECK(outcome_of({}, one, {{{L"files", L"a"}, L"because"}}) == Outcome::different);
}

TEST_CASE("an area of which there is nothing has one row that says so") {
    const std::vector<Row> rows = compare(one, one, {});
    CHECK(row_of(rows, L"files", L"all") == nullptr);
    const Row* const service = row_of(rows, L"service", L"all");
    REQUIRE(service != nullptr);
    CHECK(service->outcome == Outcome::as_expected);
    CHECK(service->expected == L"nothing");
    // A whole area that is missing is told by what is missing of it.
    CHECK(row_of(compare(one, {}, {}), L"files", L"all") == nullptr);
}

TEST_CASE("a second value under one name is seen") {
    Facts facts = one;
    add_fact(facts, L"files", L"a", L"3");
    CHECK(facts.at({L"files", L"a"}) == L"1 | 3");
    CHECK(outcome_of(one, facts) == Outcome::different);
}

TEST_CASE("a file that cannot be read is like no other, not even like an original that cannot be read") {
    Facts expected;
    add_copy_fact(expected, L"a", L"C:\\nowhere\\original");
    Facts found;
    add_file_fact(found, L"a", std::nullopt);
    CHECK(outcome_of(expected, found) == Outcome::different);
}

TEST_CASE("a file is told by its size and its SHA-256") {
    Facts facts;
    add_file_fact(facts, L"empty", std::string());
    add_file_fact(facts, L"abc", std::string("abc"));
    CHECK(utf8_from_wide(facts.at({L"files", L"empty"})) ==
          "0 bytes, SHA-256 e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    CHECK(utf8_from_wide(facts.at({L"files", L"abc"})) ==
          "3 bytes, SHA-256 ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}
