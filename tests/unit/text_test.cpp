#include "common/text.h"

#include <doctest/doctest.h>

#include <windows.h>

TEST_CASE("to_utf8 and from_utf8 convert every plane both ways") {
    const std::wstring wide = L"a\u00E9\u20AC\U0001F6E1";
    const std::string utf8 = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x9B\xA1";
    CHECK(to_utf8(wide) == utf8);
    CHECK(from_utf8(utf8) == wide);
    CHECK(to_utf8(L"").empty());
    CHECK(from_utf8("").empty());
}

TEST_CASE("to_utf8 and from_utf8 keep a NUL inside the text") {
    CHECK(to_utf8(std::wstring(L"a\0b", 3)) == std::string("a\0b", 3));
    CHECK(from_utf8(std::string("a\0b", 3)) == std::wstring(L"a\0b", 3));
}

TEST_CASE("from_utf8 replaces invalid bytes instead of failing") {
    CHECK(from_utf8("a\xFFz") == L"a\uFFFDz");
}

TEST_CASE("to_ansi writes the system's code page and loses what it cannot hold without look-alikes") {
    REQUIRE(GetACP() == 1252);
    CHECK(to_ansi(L"plain.crx") == "plain.crx");
    CHECK(to_ansi(L"caf\u00E9") == "caf\xE9");
    CHECK(to_ansi(L"\u65E5\u672C.txt") == "??.txt");
    // Full-width letters would become plain ones by best fit.
    CHECK(to_ansi(L".\uFF50\uFF45\uFF4D") == ".???");
    CHECK(to_ansi(L"").empty());
}

TEST_CASE("to_lower lowers wide letters and leaves the rest") {
    CHECK(to_lower(L"Chrome.EXE") == L"chrome.exe");
    CHECK(to_lower(L"MSEDGE-2_x") == L"msedge-2_x");
    CHECK(to_lower(L"").empty());
}

TEST_CASE("ascii_to_lower lowers A to Z and no other byte") {
    CHECK(ascii_to_lower("AbZ@[`{09") == "abz@[`{09");
    CHECK(ascii_to_lower("\xC9.CRX") == "\xC9.crx");
}
