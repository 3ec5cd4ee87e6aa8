// How the loader starts and calls the runtime of a machine: stand-in DLLs record
// how they are called.
#include <doctest/doctest.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "webview2/creation_attempt.h"
#include "webview2/loader.h"
#include "webview2_machine.h"

TEST_CASE("without a runtime the documented error comes back and the handler is not called") {
    const Machine machine;
    const Creation creation;
    CHECK(creation.started == no_runtime);
    CHECK(creation.handler.results.empty());
}

TEST_CASE("a null handler is refused first of all") {
    const Machine machine;
    CHECK(CreateCoreWebView2EnvironmentWithOptions(nullptr, nullptr, nullptr, nullptr) == E_POINTER);
}

TEST_CASE("the machine's runtime is loaded and called as the real loader does and stays loaded") {
    const Machine machine;
    const auto folder = Machine::place_runtime(L"120.0.2210.91");
    Machine::register_for_machine(folder);
    const Creation creation;
    CHECK(creation.started == S_OK);
    CHECK(creation.has_environment());
    CHECK(creation.results_inside_call == 0);
    CHECK(Machine::calls() == std::vector<std::string>{"(true, 0, C:\\data, null)"});
    CHECK(Machine::is_loaded(folder));
}

TEST_CASE("a null user data folder stays null and an empty one stays empty") {
    const Machine machine;
    Machine::register_for_machine(Machine::place_runtime(L"120.0.2210.91"));
    CHECK(Creation(nullptr, nullptr).started == S_OK);
    CHECK(Creation(L"", L"").started == S_OK);
    CHECK(Machine::calls() == std::vector<std::string>{"(true, 0, null, null)", "(true, 0, , null)"});
}

TEST_CASE("a DLL that cannot be loaded or lacks the entry gives Windows' error") {
    const Machine machine;
    const auto folder = Machine::place_runtime(L"120.0.2210.91");
    Machine::register_for_machine(folder);
    SUBCASE("not a program") {
        std::ofstream(std::filesystem::path(Machine::dll_of(folder)), std::ios::trunc) << "no DLL";
        CHECK(Creation().started == static_cast<HRESULT>(0x800700C1));
    }
    SUBCASE("no such export") {
        CopyFileW(standin_file(L"neighbour\\orvanta_neighbour.dll").c_str(), Machine::dll_of(folder).c_str(),
                  FALSE);
        CHECK(Creation().started == static_cast<HRESULT>(0x8007007F));
    }
}

TEST_CASE("a DLL beside the runtime is found although the search is restricted to the system folder") {
    const Machine machine;
    REQUIRE(SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32) != 0);
    const auto folder = Machine::place_runtime(L"120.0.2210.91", L"neighbour\\EmbeddedBrowserWebView.dll");
    Machine::register_for_machine(folder);
    // In this order: once loaded, the neighbour is found by its name alone.
    SUBCASE("missing") {
        CHECK(Creation().started == static_cast<HRESULT>(0x8007007E));
    }
    SUBCASE("there") {
        REQUIRE(CopyFileW(standin_file(L"neighbour\\orvanta_neighbour.dll").c_str(),
                          (folder + L"\\EBWebView\\x64\\orvanta_neighbour.dll").c_str(), FALSE) != 0);
        CHECK(Creation().started == S_FALSE + 42);
    }
}

TEST_CASE("a start that is refused and one that fails are tried once more each but not twice") {
    const Machine machine;
    Machine::register_for_machine(Machine::place_runtime(L"120.0.2210.91"));
    struct Row {
        const wchar_t* outcomes;
        HRESULT started;
        std::size_t calls;
        std::vector<HRESULT> results;
        std::size_t results_inside_call;
    };
    const std::vector<HRESULT> none;
    const std::vector<HRESULT> good = {S_OK};
    const std::vector<HRESULT> bad = {E_FAIL};
    Row row = {};
    SUBCASE("inside") {
        row = {L"inside", S_OK, 1, good, 1};
    }
    SUBCASE("refused once") {
        row = {L"refuse,later", S_OK, 2, good, 0};
    }
    SUBCASE("refused twice") {
        row = {L"refuse,refuse,later", E_FAIL, 2, none, 0};
    }
    SUBCASE("failed once, later") {
        row = {L"fail-later,later", S_OK, 2, good, 0};
    }
    SUBCASE("failed twice, later") {
        row = {L"fail-later,fail-later,later", S_OK, 2, bad, 0};
    }
    SUBCASE("failed once, inside") {
        row = {L"fail-inside,inside", S_OK, 2, good, 1};
    }
    SUBCASE("failed twice, inside") {
        row = {L"fail-inside,fail-inside,inside", S_OK, 2, bad, 1};
    }
    SUBCASE("refused, then failed, later") {
        row = {L"refuse,fail-later,later", S_OK, 3, good, 0};
    }
    SUBCASE("refused, then failed, inside") {
        row = {L"refuse,fail-inside,inside", S_OK, 3, good, 1};
    }
    SUBCASE("refused, then failed twice") {
        row = {L"refuse,fail-later,fail-later,later", S_OK, 3, bad, 0};
    }
    SUBCASE("refused, then failed, then refused") {
        row = {L"refuse,fail-later,refuse,later", S_OK, 3, bad, 0};
    }
    SUBCASE("failed, then refused") {
        row = {L"fail-later,refuse,later", S_OK, 2, bad, 0};
    }
    SetEnvironmentVariableW(L"ORVANTA_WEBVIEW2_OUTCOMES", row.outcomes);
    const Creation creation;
    CHECK(creation.started == row.started);
    CHECK(creation.handler.results == row.results);
    CHECK(creation.results_inside_call == row.results_inside_call);
    CHECK(Machine::calls().size() == row.calls);
}

TEST_CASE("the handler that the runtime is given answers IUnknown and its own id and refuses the rest") {
    RecordingHandler handler;
    auto* const attempt = new CreationAttempt(nullptr, nullptr, nullptr, &handler);
    CHECK(handler.references == 2);
    for (const IID& id : {IID_IUnknown, IID_ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler}) {
        void* object = nullptr;
        CHECK(attempt->QueryInterface(id, &object) == S_OK);
        CHECK(object == attempt);
        CHECK(attempt->Release() == 1);
    }
    void* object = attempt;
    CHECK(attempt->QueryInterface(IID_ICoreWebView2Environment, &object) == E_NOINTERFACE);
    CHECK(object == nullptr);
    CHECK(attempt->QueryInterface(IID_IUnknown, nullptr) == E_POINTER);
    CHECK(attempt->Release() == 0);
    CHECK(handler.references == 1);
}
