#include "common/json.h"

#include <doctest/doctest.h>
#include <random>
#include <string>

TEST_CASE("json_escape puts a backslash before quotes and backslashes and changes nothing else") {
    CHECK(json_escape("") == "");
    CHECK(json_escape("plain") == "plain");
    CHECK(json_escape("say \"x\"") == "say \\\"x\\\"");
    CHECK(json_escape("C:\\a\\b") == "C:\\\\a\\\\b");
    CHECK(json_escape("\\\"") == "\\\\\\\"");
    CHECK(json_escape("a\nb\r\tc") == "a\nb\r\tc");
    CHECK(json_escape("\xC3\xA9\xE2\x80\x94") == "\xC3\xA9\xE2\x80\x94");
    CHECK(json_escape(std::string("a\0b", 3)) == std::string("a\0b", 3));
}

TEST_CASE("json_get_field reads quoted and bare values") {
    const std::string json = R"({"action":"install","fwc":true,"lw":false,"index":12})";
    CHECK(json_get_field(json, "action") == "install");
    CHECK(json_get_field(json, "fwc") == "true");
    CHECK(json_get_field(json, "lw") == "false");
    CHECK(json_get_field(json, "index") == "12");
    CHECK(json_get_field(json, "missing") == "");
    CHECK(json_get_field("", "action") == "");
    CHECK(json_get_field("not json at all", "action") == "");
}

TEST_CASE("json_get_field finds a key only when the colon follows its quote at once") {
    CHECK(json_get_field(R"({"action" : "close"})", "action") == "");
    CHECK(json_get_field(R"({"action" :"close"})", "action") == "");
    CHECK(json_get_field(R"({action:"close"})", "action") == "");
    CHECK(json_get_field(R"({'action':"close"})", "action") == "");
}

TEST_CASE("json_get_field skips blanks and tabs before a value but no line breaks") {
    CHECK(json_get_field("{\"index\":  \t 3}", "index") == "3");
    CHECK(json_get_field("{\"fwc\": \"true\"}", "fwc") == "true");
    CHECK(json_get_field("{\"index\":\n3}", "index") == "");
    CHECK(json_get_field("{\"index\":\r3}", "index") == "\r3");
    CHECK(json_get_field("{\"index\":\r\n3}", "index") == "\r");
}

TEST_CASE("json_get_field ends a bare value at comma, closing brace, blank, tab and line feed") {
    CHECK(json_get_field("{\"k\":1,2}", "k") == "1");
    CHECK(json_get_field("{\"k\":1}2", "k") == "1");
    CHECK(json_get_field("{\"k\":1 2}", "k") == "1");
    CHECK(json_get_field("{\"k\":1\t2}", "k") == "1");
    CHECK(json_get_field("{\"k\":1\n2}", "k") == "1");
    CHECK(json_get_field("{\"k\":1\r2}", "k") == "1\r2");
    CHECK(json_get_field("{\"k\":[1]}", "k") == "[1]");
    CHECK(json_get_field("{\"k\":3abc}", "k") == "3abc");
    CHECK(json_get_field("{\"k\":null}", "k") == "null");
}

TEST_CASE("json_get_field lets an unended bare value run to the end and an unended quote count as nothing") {
    CHECK(json_get_field("{\"k\":12", "k") == "12");
    CHECK(json_get_field("{\"k\":\"open", "k") == "");
    CHECK(json_get_field("{\"k\":\"", "k") == "");
    CHECK(json_get_field("{\"k\":", "k") == "");
    CHECK(json_get_field("{\"k\":  \t", "k") == "");
    CHECK(json_get_field("{\"k\":,", "k") == "");
    CHECK(json_get_field("{\"k\":\"\"}", "k") == "");
}

TEST_CASE("json_get_field returns a quoted value raw up to the next quote") {
    CHECK(json_get_field(R"({"k":"a\nb"})", "k") == R"(a\nb)");
    CHECK(json_get_field(R"({"k":"a\"b"})", "k") == "a\\");
    CHECK(json_get_field("{\"k\":\"line\nfeed, brace}\"}", "k") == "line\nfeed, brace}");
}

TEST_CASE("json_get_field takes the first occurrence of the key wherever it stands") {
    CHECK(json_get_field(R"({"k":1,"k":2})", "k") == "1");
    CHECK(json_get_field(R"({"outer":{"k":1},"k":2})", "k") == "1");
    CHECK(json_get_field(R"({"text":"x"k":7,","k":2})", "k") == "7");
}

TEST_CASE("json_get_field gives back what json_escape was given when nothing needed escaping") {
    std::mt19937 random(20250305); // NOLINT(cert-msc51-cpp): the same cases at every run
    std::uniform_int_distribution<int> length(0, 40);
    std::uniform_int_distribution<int> byte(0, 255);
    for (int round = 0; round < 2000; ++round) {
        std::string value;
        for (int i = length(random); i > 0; --i) {
            const char c = static_cast<char>(byte(random));
            value += c == '"' || c == '\\' ? '_' : c;
        }
        CAPTURE(value);
        CHECK(json_get_field("{\"k\":\"" + json_escape(value) + "\"}", "k") == value);
    }
}
