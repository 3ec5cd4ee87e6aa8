#include "ui/page_text.h"

#include <algorithm>
#include <doctest/doctest.h>
#include <fstream>
#include <iterator>
#include <string>

// ORVANTA_PAGE_FILE names the joined page on which the page tests run.

TEST_CASE("the program carries the page that the page tests see") {
    std::ifstream file(ORVANTA_PAGE_FILE, std::ios::binary);
    REQUIRE_MESSAGE(file.is_open(), ORVANTA_PAGE_FILE);
    const std::string tested{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};

    const std::wstring carried = page_text();
    REQUIRE(carried.size() == tested.size());
    CHECK(std::equal(carried.begin(), carried.end(), tested.begin(), [](wchar_t wide, char narrow) {
        return wide == static_cast<wchar_t>(static_cast<unsigned char>(narrow));
    }));
}

TEST_CASE("the page is a whole document of plain ASCII") {
    const std::wstring page = page_text();
    CHECK(page.rfind(L"<!DOCTYPE html>\n<html lang=\"en\">", 0) == 0);
    const std::wstring end = L"</script></body></html>\n";
    REQUIRE(page.size() > end.size());
    CHECK(page.substr(page.size() - end.size()) == end);
    CHECK(std::all_of(page.begin(), page.end(),
                      [](wchar_t c) { return c == L'\n' || (c >= L' ' && c <= L'~'); }));
}

TEST_CASE("the page has room for 32000 characters and stays below") {
    const std::wstring page = page_text();
    CHECK(page.capacity() >= 32000);
    CHECK(page.size() < 32000);
    CHECK(page.size() > 20000);
}

TEST_CASE("the page can be asked for more than once") {
    CHECK(page_text() == page_text());
}
