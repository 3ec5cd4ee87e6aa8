#include <doctest/doctest.h>
#include <string>
#include <vector>

#include "options.h"
#include "text_forms.h"

TEST_CASE("the acceptance takes its options in any order") {
    const AcceptanceOptions options =
        read_options({L"--report", L"r.json", L"--remove-first", L"--limit", L"20", L"--program", L"--help",
                      L"--after-step", L"echo 1", L"--this-machine-may-be-thrown-away"});
    CHECK(options.complaint == L"");
    CHECK(options.report == L"r.json");
    CHECK(options.program == L"--help");
    CHECK(options.after_step == L"echo 1");
    CHECK(options.limit_s == 20);
    CHECK(options.removes_first);
    CHECK(options.may_be_thrown_away);
    CHECK_FALSE(options.wants_help);
}

TEST_CASE("without options the acceptance may do nothing to the machine") {
    const AcceptanceOptions options = read_options({});
    CHECK(options.complaint == L"");
    CHECK_FALSE(options.may_be_thrown_away);
    CHECK_FALSE(options.removes_first);
    CHECK(options.limit_s == 300);
}

TEST_CASE("the acceptance says what is wrong with its arguments") {
    const std::vector<std::pair<std::vector<std::wstring>, std::string>> cases = {
        {{L"--fast"}, "unknown argument '--fast'"},
        {{L""}, "unknown argument ''"},
        {{L"--Help"}, "unknown argument '--Help'"},
        {{L"--program"}, "--program needs a value"},
        {{L"--report", L""}, "--report needs a value"},
        {{L"--limit", L"0"}, "--limit needs a number of seconds, not '0'"},
        {{L"--limit", L"5s"}, "--limit needs a number of seconds, not '5s'"},
        {{L"--limit", L"-1"}, "--limit needs a number of seconds, not '-1'"},
        {{L"--limit", L"123456"}, "--limit needs a number of seconds, not '123456'"},
        {{L"--one", L"--two"}, "unknown argument '--one'"},
    };
    for (const auto& [arguments, complaint] : cases) {
        CHECK(utf8_from_wide(read_options(arguments).complaint) == complaint);
    }
}
