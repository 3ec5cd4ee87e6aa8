// What the caller and the machine's policies say about the runtime, and what has
// no say in it.
#include <doctest/doctest.h>
#include <filesystem>
#include <string>
#include <vector>

#include "webview2_machine.h"

namespace {

/// The parameters of the runtime's last call; empty when there was none.
std::string last_call() {
    const std::vector<std::string> calls = Machine::calls();
    return calls.empty() ? "" : calls.back();
}

} // namespace

TEST_CASE("the folder that the caller names is a fixed runtime of any version") {
    const Machine machine;
    const auto folder = Machine::place_runtime(L"fixed");
    CHECK(Creation(folder.c_str()).has_environment());
    CHECK(Machine::calls() == std::vector<std::string>{"(true, 1, C:\\data, null)"});
    CHECK(Creation((folder + L"\\nothing").c_str()).started == no_runtime);
}

TEST_CASE("a relative folder is one below the program's own") {
    const Machine machine;
    const auto folder = Machine::place_runtime(L"fixed");
    wchar_t program[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    const std::filesystem::path own =
        std::filesystem::path(program).parent_path() / L"webview2_fixed_runtime";
    // Beside the test program, not on its machine: what an earlier run has left there goes first.
    std::filesystem::remove_all(own);
    CHECK(Creation(L"webview2_fixed_runtime").started == no_runtime);
    REQUIRE(std::filesystem::create_directories(own / L"EBWebView\\x64"));
    REQUIRE(CopyFileW(Machine::dll_of(folder).c_str(), Machine::dll_of(own.wstring()).c_str(), FALSE) !=
            FALSE);
    CHECK(Creation(L"webview2_fixed_runtime").has_environment());
    CHECK(Machine::is_loaded(own.wstring()));
    CHECK_FALSE(Machine::is_loaded(folder));
}

TEST_CASE("the machine's policy chooses the runtime") {
    const Machine machine;
    const auto installed = Machine::place_runtime(L"120.0.2210.91");
    const auto fixed = Machine::place_runtime(L"fixed");
    const auto other = Machine::place_runtime(L"other");
    Machine::register_for_machine(installed);
    SUBCASE("for every program") {
        set_policy(L"BrowserExecutableFolder", L"*", fixed);
        CHECK(Creation().has_environment());
    }
    SUBCASE("for this program before every program") {
        set_policy(L"BrowserExecutableFolder", L"*", other);
        set_policy(L"BrowserExecutableFolder", name_of_program().c_str(), fixed);
        CHECK(Creation().has_environment());
    }
    SUBCASE("over the folder that the program asks for") {
        set_policy(L"BrowserExecutableFolder", L"*", fixed);
        CHECK(Creation(other.c_str()).has_environment());
    }
    CHECK(Machine::calls() == std::vector<std::string>{"(true, 1, C:\\data, null)"});
    CHECK(Machine::is_loaded(fixed));
    CHECK_FALSE(Machine::is_loaded(other));
    CHECK_FALSE(Machine::is_loaded(installed));
}

TEST_CASE("a policy for another program or a folder without a runtime is no way around") {
    const Machine machine;
    const auto installed = Machine::place_runtime(L"120.0.2210.91");
    Machine::register_for_machine(installed);
    SUBCASE("another program") {
        set_policy(L"BrowserExecutableFolder", L"another.exe", Machine::place_runtime(L"fixed"));
        CHECK(Creation().has_environment());
        CHECK(Machine::is_loaded(installed));
    }
    SUBCASE("no runtime in the folder") {
        set_policy(L"BrowserExecutableFolder", L"*", Machine::folder() + L"\\nothing");
        CHECK(Creation().started == no_runtime);
    }
}

TEST_CASE("a policy of release channels without the stable one leaves no runtime") {
    const Machine machine;
    Machine::register_for_machine(Machine::place_runtime(L"120.0.2210.91"));
    SUBCASE("1,2,3") {
        set_policy(L"ReleaseChannels", L"*", L"1,2,3");
        CHECK(Creation().started == no_runtime);
    }
    SUBCASE("1, but not understood") {
        set_policy(L"ReleaseChannels", L"*", L"1;2");
        CHECK(Creation().has_environment());
    }
    SUBCASE("0,1") {
        set_policy(L"ReleaseChannels", name_of_program().c_str(), L"0,1");
        set_policy(L"ReleaseChannels", L"*", L"1");
        CHECK(Creation().has_environment());
    }
}

TEST_CASE("the user data folder follows a policy for this program and never one for all programs") {
    const Machine machine;
    Machine::register_for_machine(Machine::place_runtime(L"120.0.2210.91"));
    set_policy(L"UserDataFolder", L"*", L"C:\\for all");
    CHECK(Creation().started == S_OK);
    set_policy(L"UserDataFolder", name_of_program().c_str(), L"C:\\for this");
    CHECK(Creation().started == S_OK);
    CHECK(Creation(nullptr, nullptr).started == S_OK);
    CHECK(Machine::calls() == std::vector<std::string>{"(true, 0, C:\\data, null)",
                                                       "(true, 0, C:\\for this, null)",
                                                       "(true, 0, C:\\for this, null)"});
}

TEST_CASE("variables in a policy are expanded when its type says so") {
    const Machine machine;
    const auto fixed = Machine::place_runtime(L"fixed");
    SetEnvironmentVariableW(L"WEBVIEW2_TEST_FOLDER", Machine::folder().c_str());
    set_policy(L"BrowserExecutableFolder", L"*", L"%WEBVIEW2_TEST_FOLDER%\\fixed", REG_EXPAND_SZ);
    set_policy(L"UserDataFolder", name_of_program().c_str(), L"%WEBVIEW2_TEST_FOLDER%\\%UNKNOWN%",
               REG_EXPAND_SZ);
    CHECK(Creation().has_environment());
    CHECK(Machine::is_loaded(fixed));
    const std::string folder = std::filesystem::path(Machine::folder()).string();
    CHECK(Machine::calls() == std::vector<std::string>{"(true, 1, " + folder + "\\%UNKNOWN%, null)"});
    set_policy(L"BrowserExecutableFolder", L"*", L"%WEBVIEW2_TEST_FOLDER%\\fixed");
    CHECK(Creation().started == no_runtime);

    // What it expands to may be of any length.
    const std::wstring long_text(1500, L'x');
    SetEnvironmentVariableW(L"WEBVIEW2_TEST_FOLDER", long_text.c_str());
    set_policy(L"BrowserExecutableFolder", L"*", fixed);
    set_policy(L"UserDataFolder", name_of_program().c_str(), L"%WEBVIEW2_TEST_FOLDER%%WEBVIEW2_TEST_FOLDER%",
               REG_EXPAND_SZ);
    CHECK(Creation().has_environment());
    CHECK(last_call() == "(true, 1, " + std::string(3000, 'x') + ", null)");
    set_policy(L"UserDataFolder", name_of_program().c_str(), std::wstring(5000, L'y'));
    CHECK(Creation().has_environment());
    CHECK(last_call() == "(true, 1, " + std::string(5000, 'y') + ", null)");
    SetEnvironmentVariableW(L"WEBVIEW2_TEST_FOLDER", nullptr);
}

TEST_CASE("a policy that is no text is none and the next name is asked") {
    const Machine machine;
    const auto installed = Machine::place_runtime(L"120.0.2210.91");
    const auto fixed = Machine::place_runtime(L"fixed");
    Machine::register_for_machine(installed);
    const std::wstring name = name_of_program();
    const DWORD types[] = {REG_DWORD, REG_BINARY, REG_MULTI_SZ, REG_NONE, REG_QWORD};
    for (const DWORD type : types) {
        CAPTURE(type);
        set_policy(L"BrowserExecutableFolder", name.c_str(), Machine::folder() + L"\\nothing", type);
        set_policy(L"UserDataFolder", name.c_str(), L"C:\\policy", type);
        set_policy(L"ReleaseChannels", name.c_str(), L"1", type);
        CHECK(Creation().has_environment());
        CHECK(last_call() == "(true, 0, C:\\data, null)");
    }
    set_policy(L"BrowserExecutableFolder", L"*", fixed);
    CHECK(Creation().has_environment());
    CHECK(last_call() == "(true, 1, C:\\data, null)");
    CHECK(Machine::is_loaded(fixed));
}

TEST_CASE("a policy that is there but empty ends the search") {
    const Machine machine;
    const auto installed = Machine::place_runtime(L"120.0.2210.91");
    const auto fixed = Machine::place_runtime(L"fixed");
    Machine::register_for_machine(installed);
    const std::wstring name = name_of_program();
    const DWORD type = [] {
        DWORD text_type = REG_SZ;
        SUBCASE("a text") {
        }
        SUBCASE("an expandable text") {
            text_type = REG_EXPAND_SZ;
        }
        return text_type;
    }();
    set_policy(L"BrowserExecutableFolder", name.c_str(), L"", type);
    set_policy(L"BrowserExecutableFolder", L"*", fixed);
    set_policy(L"ReleaseChannels", name.c_str(), L"", type);
    set_policy(L"ReleaseChannels", L"*", L"1");
    CHECK(Creation().has_environment());
    CHECK(last_call() == "(true, 0, C:\\data, null)");
    // The installed runtime, whatever folder the program asks for.
    CHECK(Creation(fixed.c_str()).has_environment());
    CHECK(last_call() == "(true, 0, C:\\data, null)");
    CHECK_FALSE(Machine::is_loaded(fixed));
    // Nor does the program's own folder for the user's data count: the runtime chooses one.
    set_policy(L"UserDataFolder", name.c_str(), L"", type);
    CHECK(Creation().has_environment());
    CHECK(last_call() == "(true, 0, null, null)");
}

TEST_CASE("neither the user's policies nor environment variables are looked at") {
    const Machine machine;
    const auto installed = Machine::place_runtime(L"120.0.2210.91");
    const auto planted = Machine::place_runtime(L"planted");
    Machine::register_for_machine(installed);
    set_policy(L"BrowserExecutableFolder", L"*", planted, REG_SZ, HKEY_CURRENT_USER);
    set_policy(L"ReleaseChannels", L"*", L"1", REG_SZ, HKEY_CURRENT_USER);
    set_policy(L"UserDataFolder", name_of_program().c_str(), L"C:\\planted", REG_SZ, HKEY_CURRENT_USER);
    SetEnvironmentVariableW(L"WEBVIEW2_BROWSER_EXECUTABLE_FOLDER", planted.c_str());
    SetEnvironmentVariableW(L"WEBVIEW2_USER_DATA_FOLDER", L"C:\\planted");
    SetEnvironmentVariableW(L"WEBVIEW2_RELEASE_CHANNELS", L"1");
    SetEnvironmentVariableW(L"WEBVIEW2_CHANNEL_SEARCH_KIND", L"1");
    CHECK(Creation().has_environment());
    CHECK(Machine::calls() == std::vector<std::string>{"(true, 0, C:\\data, null)"});
    CHECK(Machine::is_loaded(installed));
    CHECK_FALSE(Machine::is_loaded(planted));
}
