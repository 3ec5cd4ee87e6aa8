#include <doctest/doctest.h>
#include <string>

#include "started_program.h"
#include "test_files.h"

namespace {

constexpr wchar_t report[] = L"C:\\acceptance.json";

DWORD exit_code_of_acceptance(HANDLE token, const std::wstring& options) {
    const std::wstring kit = path_from_environment(L"ORVANTA_KIT");
    const StartedProgram acceptance(kit + L"\\acceptance.exe", options + L" --report " + report, {}, token);
    return acceptance.exit_code();
}

} // namespace

TEST_CASE("without administrator rights the acceptance touches nothing and ends with 3") {
    const OwnedHandle token = restricted_token();
    CHECK(exit_code_of_acceptance(token.get(), L"--this-machine-may-be-thrown-away") == 3);
    CHECK_FALSE(is_there(report));
    CHECK_FALSE(is_there(L"C:\\Program Files\\Brackenfold"));
}

TEST_CASE("what is wrong with the acceptance's arguments is told to everybody, with 2") {
    const OwnedHandle token = restricted_token();
    CHECK(exit_code_of_acceptance(token.get(), L"") == 2);
    CHECK_FALSE(is_there(report));
}
