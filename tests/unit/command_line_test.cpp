#include "app/command_line.h"

#include <doctest/doctest.h>
#include <random>

#include "app/elevation.h"

namespace {

Options parsed(const std::vector<std::wstring>& arguments) {
    std::vector<std::wstring> with_program = {L"C:\\Setup\\OrvantaInstaller.exe"};
    with_program.insert(with_program.end(), arguments.begin(), arguments.end());
    return parse_options(with_program);
}

std::wstring parameters_for(const std::vector<std::wstring>& arguments) {
    std::vector<std::wstring> with_program = {L"C:\\Setup folder\\OrvantaInstaller.exe"};
    with_program.insert(with_program.end(), arguments.begin(), arguments.end());
    return relaunch_parameters(with_program);
}

} // namespace

TEST_CASE("no arguments set nothing") {
    for (const auto& arguments : {std::vector<std::wstring>{}, {L"C:\\x.exe"}}) {
        const Options options = parse_options(arguments);
        CHECK_FALSE(options.install);
        CHECK_FALSE(options.uninstall);
        CHECK_FALSE(options.silent);
        CHECK_FALSE(options.uninstall_gui);
        CHECK_FALSE(options.source_dir.has_value());
    }
}

TEST_CASE("each option sets its own flag in its long and its short form") {
    for (const wchar_t* argument : {L"--install", L"-i"}) {
        const Options options = parsed({argument});
        CHECK(options.install);
        CHECK_FALSE((options.uninstall || options.silent || options.uninstall_gui));
    }
    for (const wchar_t* argument : {L"--uninstall", L"-u"}) {
        const Options options = parsed({argument});
        CHECK(options.uninstall);
        CHECK_FALSE((options.install || options.silent || options.uninstall_gui));
    }
    for (const wchar_t* argument : {L"--silent", L"-s"}) {
        const Options options = parsed({argument});
        CHECK(options.silent);
        CHECK_FALSE((options.install || options.uninstall || options.uninstall_gui));
    }
    const Options options = parsed({L"--uninstall-gui"});
    CHECK(options.uninstall_gui);
    CHECK_FALSE((options.install || options.uninstall || options.silent));
}

TEST_CASE("options are compared exactly and in their letter case") {
    for (const wchar_t* argument :
         {L"--Install", L"/install", L"-I", L"--install ", L" --install", L"--inst", L"-install",
          L"/uninstall", L"--SILENT", L"", L"--uninstall-GUI", L"-g"}) {
        CAPTURE(argument);
        const Options options = parsed({argument});
        CHECK_FALSE((options.install || options.uninstall || options.silent || options.uninstall_gui));
    }
}

TEST_CASE("the program name is never an option") {
    CHECK_FALSE(parse_options({L"--silent"}).silent);
}

TEST_CASE("options may be combined, repeated and mixed with unknown arguments") {
    const Options options =
        parsed({L"-s", L"what", L"--install", L"-s", L"--uninstall", L"--uninstall-gui", L"-i"});
    CHECK(options.install);
    CHECK(options.uninstall);
    CHECK(options.silent);
    CHECK(options.uninstall_gui);
}

TEST_CASE("source takes the next argument as it stands") {
    CHECK(parsed({L"--source", L"D:\\Media\\"}).source_dir == L"D:\\Media\\");
    CHECK(parsed({L"--source", L"relative/dir"}).source_dir == L"relative/dir");
    CHECK(parsed({L"--source", L""}).source_dir == L"");
}

TEST_CASE("source consumes an option that follows it") {
    const Options options = parsed({L"--source", L"--silent"});
    CHECK(options.source_dir == L"--silent");
    CHECK_FALSE(options.silent);
    const Options doubled = parsed({L"--source", L"--source", L"x"});
    CHECK(doubled.source_dir == L"--source");
}

TEST_CASE("source as the last argument is ignored and the last of several wins") {
    CHECK_FALSE(parsed({L"--source"}).source_dir.has_value());
    const Options options = parsed({L"--source", L"a", L"--source", L"b", L"--source"});
    CHECK(options.source_dir == L"b");
}

TEST_CASE("the default source is the program's folder without any final separator") {
    CHECK(folder_of_program(L"C:\\Setup\\OrvantaInstaller.exe") == L"C:\\Setup");
    CHECK(folder_of_program(L"C:\\Setup folder/x.exe") == L"C:\\Setup folder");
    CHECK(folder_of_program(L"C:\\a\\\\//x.exe") == L"C:\\a");
    CHECK(folder_of_program(L"C:\\x.exe") == L"C:");
    CHECK(folder_of_program(L"x.exe") == L"");
    CHECK(folder_of_program(L"") == L"");
}

TEST_CASE("relaunch parameters are the arguments with one blank between them") {
    CHECK(parameters_for({}) == L"");
    CHECK(parameters_for({L"-s"}) == L"-s");
    CHECK(parameters_for({L"--install", L"--source", L"D:\\Media"}) == L"--install --source D:\\Media");
}

TEST_CASE("relaunch parameters quote an argument with a blank and no other") {
    CHECK(parameters_for({L"--source", L"D:\\My media"}) == L"--source \"D:\\My media\"");
    CHECK(parameters_for({L" "}) == L"\" \"");
    CHECK(parameters_for({L"a\tb"}) == L"a\tb");
    CHECK(parameters_for({L"a\u00A0b"}) == L"a\u00A0b");
    CHECK(parameters_for({L"say\"x\""}) == L"say\"x\"");
    CHECK(parameters_for({L"say \"x\""}) == L"\"say \"x\"\"");
    CHECK(parameters_for({L"D:\\My media\\"}) == L"\"D:\\My media\\\"");
}

TEST_CASE("an empty argument vanishes from the relaunch parameters but for its separator") {
    CHECK(parameters_for({L"", L"-s"}) == L" -s");
    CHECK(parameters_for({L"-i", L""}) == L"-i ");
    CHECK(parameters_for({L"", L""}) == L" ");
    CHECK(parameters_for({L""}) == L"");
}

TEST_CASE("the second instance splits ordinary relaunch parameters into the same arguments") {
    // Quotes, tabs, empty arguments and final backslashes are where the simple rule is known to differ.
    const std::wstring alphabet = L"ab-/.:_ \u00E9\u65E5\\";
    std::mt19937 random(7); // NOLINT(cert-msc51-cpp): the same cases at every run
    std::uniform_int_distribution<size_t> letter(0, alphabet.size() - 1);
    std::uniform_int_distribution<int> length(1, 12);
    std::uniform_int_distribution<int> count(1, 5);
    for (int round = 0; round < 1000; ++round) {
        std::vector<std::wstring> arguments = {L"x.exe"};
        for (int i = count(random); i > 0; --i) {
            std::wstring argument;
            for (int n = length(random); n > 0; --n) {
                argument += alphabet[letter(random)];
            }
            argument += argument.back() == L'\\' ? L"z" : L"";
            arguments.push_back(argument);
        }
        const std::wstring line = L"x.exe " + relaunch_parameters(arguments);
        CHECK(split_command_line(line.c_str()) == arguments);
    }
}

TEST_CASE("a quoted folder that ends in a backslash swallows its closing quote in the second instance") {
    const std::wstring line = L"x.exe " + parameters_for({L"--source", L"D:\\My media\\", L"-s"});
    const std::vector<std::wstring> expected = {L"x.exe", L"--source", L"D:\\My media\" -s"};
    CHECK(split_command_line(line.c_str()) == expected);
}
