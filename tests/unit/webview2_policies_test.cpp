#include "webview2/machine_policies.h"

#include <doctest/doctest.h>

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
        {L"", true},      {L"0", true},    {L"0,1", true},    {L"3,2,1,0", true}, {L"1, 0 ,2", true},
        {L"\t0", true},   {L"1", false},   {L"1,2,3", false}, {L"10", false},     {L"00", false},
        {L"1,10", false}, {L"0x", false},  {L",", false},     {L" ", false},      {L",0", true},
        {L"0,", true},    {L"0 0", false}, {L"0;1", false},
    };
    for (const Row& row : rows) {
        CAPTURE(row.channels);
        CHECK(is_stable_channel_allowed(row.channels) == row.is_allowed);
    }
}
