#include <doctest/doctest.h>

#include "webview2/machine_policies.h"

TEST_CASE("a policy counts for the process's id, then for its file, then for every program") {
    using Names = std::vector<std::wstring>;
    CHECK(policy_value_names(L"Maker.Program", L"Setup.exe", PolicyScope::any_program) ==
          Names{L"Maker.Program", L"Setup.exe", L"*"});
    CHECK(policy_value_names(L"Maker.Program", L"Setup.exe", PolicyScope::this_program_only) ==
          Names{L"Maker.Program", L"Setup.exe"});
    CHECK(policy_value_names(L"", L"Setup.exe", PolicyScope::any_program) == Names{L"Setup.exe", L"*"});
    CHECK(policy_value_names(L"", L"Setup.exe", PolicyScope::this_program_only) == Names{L"Setup.exe"});
}

TEST_CASE("the stable channel is allowed unless a list of channels leaves it out") {
    struct Row {
        const wchar_t* channels;
        bool is_allowed;
    };
    const Row rows[] = {
        {L"", true},         {L"0", true},    {L"0,1", true},      {L"3,2,1,0", true}, {L"1, 0 ,2", true},
        {L"\t0", true},      {L"4,0", true},  {L"1", false},       {L"4", false},      {L"1,2,3", false},
        {L" 1 ,\t2", false}, {L"1,1", false}, {L"1,2,3,4", false},
    };
    for (const Row& row : rows) {
        CAPTURE(row.channels);
        CHECK(is_stable_channel_allowed(row.channels) == row.is_allowed);
    }
}

TEST_CASE("a list with one entry that is no channel counts as no policy") {
    for (const wchar_t* const channels :
         {L"abc", L"5",     L"9",     L"10", L"00",   L"01",  L"0.0", L"0;1",    L"0 1",    L"0x0",
          L"0x",  L"1,abc", L"abc,1", L"-1", L"+1",   L"1;0", L"1 0", L"1,5",    L"1,10",   L"1,2,03",
          L",",   L" ",     L"1,",    L",1", L"1,,2", L"/",   L":",   L"\uFF11", L"1\u00A0"}) {
        CAPTURE(channels);
        CHECK(is_stable_channel_allowed(channels));
    }
}
