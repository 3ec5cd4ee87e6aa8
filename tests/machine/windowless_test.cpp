#include <doctest/doctest.h>
#include <string>
#include <vector>

#include <windows.h>
#include <objbase.h>

#include "app/modes.h"
#include "app/webview_host.h"
#include "before_each_case.h"
#include "common/installation_medium.h"
#include "expected_browsers.h"
#include "intercepted_call.h"
#include "machine_state.h"
#include "recorded_pauses.h"
#include "refused_calls.h"
#include "runs/windowless_runs.h"
#include "started_program.h"
#include "stopped_service.h"
#include "test_files.h"
#include "test_registry.h"
#include "ui/page_channel.h"

namespace {

const std::wstring console_program = L"C:\\Program Files\\Brackenfold\\FWC\\Fortwright.exe";
const std::wstring service_program = L"C:\\Program Files\\Brackenfold\\Veyra Linkward\\VeyraLinkward.exe";
const std::wstring browser_program = L"C:\\Programs\\Chrome.exe";

MachineState machine() {
    REQUIRE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
    MachineState state = read_machine_state();
    CoUninitialize();
    return state;
}

StartedProgram running_browser() {
    if (!is_there(browser_program)) {
        copy_file(path_from_environment(L"ORVANTA_BROWSER"), browser_program);
    }
    return StartedProgram(browser_program, L"--stay");
}

// Written by the stand-ins below, on the test's thread.
const StartedProgram* g_browser = nullptr;
std::vector<std::string> g_order;
const BeforeEachCase start_anew([] {
    g_browser = nullptr;
    g_order.clear();
});

BOOL WINAPI noted_command(LPCWSTR program, LPWSTR command_line, LPSECURITY_ATTRIBUTES process,
                          LPSECURITY_ATTRIBUTES thread, BOOL inherit, DWORD flags, LPVOID environment,
                          LPCWSTR directory, LPSTARTUPINFOW startup, LPPROCESS_INFORMATION information) {
    g_order.emplace_back(g_browser->is_running() ? "console, browser running" : "console");
    return real_function<decltype(CreateProcessW)>("CreateProcessW")(
        program, command_line, process, thread, inherit, flags, environment, directory, startup, information);
}

SC_HANDLE WINAPI noted_manager(LPCWSTR machine_name, LPCWSTR database, DWORD access) {
    g_order.emplace_back(is_there(console_program) ? "service, console there" : "service, console gone");
    return real_function<decltype(OpenSCManagerW)>("OpenSCManagerW")(machine_name, database, access);
}

} // namespace

TEST_CASE("both products are installed and removed in order after the browsers were closed") {
    g_source_dir = sample_products();
    RecordedPauses pauses;
    const StartedProgram browser = running_browser();
    g_browser = &browser;
    {
        const InterceptedCall command("CreateProcessW", noted_command);
        const InterceptedCall manager("OpenSCManagerW", noted_manager);
        CHECK(run_windowless_install() == 0);
        CHECK(g_order == std::vector<std::string>{"console", "service, console there"});
    }
    CHECK(pauses.all == std::vector<unsigned long>{1500});
    const MachineState installed = machine();
    CHECK(installed.uninstall.size() == 2);
    CHECK(installed.hosts.size() == expected_browsers.size() + 1);
    CHECK(installed.shortcut.has_value());
    CHECK(installed.task.has_value());
    REQUIRE(installed.service.has_value());
    CHECK(installed.service->state == L"running");

    const StartedProgram second_browser = running_browser();
    g_browser = &second_browser;
    g_order.clear();
    pauses.all.clear();
    pauses.during = [&] { wait_for_stopped_service(pauses.all.back()); };
    {
        const InterceptedCall command("CreateProcessW", noted_command);
        const InterceptedCall manager("OpenSCManagerW", noted_manager);
        CHECK(run_windowless_uninstall() == 0);
        CHECK(g_order == std::vector<std::string>{"console", "service, console gone"});
    }
    CHECK(pauses.all == std::vector<unsigned long>{1500, 2000});
    CHECK(is_empty(machine()));
}

TEST_CASE("an installation of which one product failed ends with 1 and the other is installed") {
    const std::wstring media = copy_of_sample_products();
    g_source_dir = media;
    {
        const InterceptedCall refusal("OpenSCManagerW", no_service_manager);
        CHECK(run_windowless_install() == 1);
    }
    CHECK(is_there(console_program));
    CHECK(is_there(service_program));
    REQUIRE(DeleteFileW((media + L"\\Fortwright.exe").c_str()) != FALSE);
    REQUIRE(DeleteFileW(service_program.c_str()) != FALSE);
    CHECK(run_windowless_install() == 1);
    CHECK(is_there(service_program));
    REQUIRE(machine().service.has_value());

    g_source_dir = L"C:\\None";
    RecordedPauses pauses;
    CHECK(run_windowless_install() == 1);
    // What was there before is not lost.
    CHECK(is_there(console_program));
    CHECK(is_there(service_program));
}

TEST_CASE("every combination of options without a window removes or else installs") {
    RecordedPauses pauses;
    g_source_dir = L"C:\\None"; // an installation ends with 1, a removal with 0
    const std::wstring entry = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\VeyraLinkward";
    for (unsigned bits = 0; bits < 16; ++bits) {
        Options options;
        options.install = (bits & 1) != 0;
        options.uninstall = (bits & 2) != 0;
        options.silent = (bits & 4) != 0;
        options.uninstall_gui = (bits & 8) != 0;
        if (!options.install && !options.uninstall && !options.silent) {
            continue; // the window
        }
        CAPTURE(bits);
        CHECK(run_elevated(nullptr, options) == (options.uninstall ? 0 : 1));
        CHECK(key_is_there(entry) == !options.uninstall);
        CHECK_FALSE(g_uninstall_gui);
        CHECK(g_main_window == nullptr);
    }
}
