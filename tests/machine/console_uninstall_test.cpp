#include <doctest/doctest.h>
#include <string>

#include <windows.h>
#include <objbase.h>

#include "child_roles.h"
#include "console/uninstall.h"
#include "console_installation.h"
#include "intercepted_call.h"
#include "machine_state.h"
#include "recorded_reports.h"
#include "refused_calls.h"
#include "started_program.h"
#include "test_files.h"
#include "test_registry.h"
#include "watched_places.h"

namespace {

Reports all_removed(const char* files_report = "FWC files removed") {
    return {{"Removed scheduled task", true},
            {"Removed desktop shortcut", true},
            {"Removed registry entries", true},
            {files_report, true},
            {"FWC uninstall complete", true}};
}

const char* const at_reboot = "FWC files marked for removal on reboot";

Reports uninstall() {
    RecordedReports reports;
    CHECK(uninstall_fwc(reports.progress));
    return reports.all;
}

void install_samples() {
    REQUIRE(install_console(sample_products()).result);
}

DWORD WINAPI console_denied(LPCWSTR path) {
    if (console_dir == path) {
        SetLastError(ERROR_ACCESS_DENIED);
        return INVALID_FILE_ATTRIBUTES;
    }
    return real_function<decltype(GetFileAttributesW)>("GetFileAttributesW")(path);
}

} // namespace

TEST_CASE("an installed console goes whole") {
    install_samples();
    write_file(console_dir + L"\\data\\settings.txt", "x", FILE_ATTRIBUTE_READONLY);
    CHECK(uninstall() == all_removed());
    REQUIRE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
    const MachineState state = read_machine_state();
    CoUninitialize();
    CHECK(is_empty(state));
    CHECK(state.left_behind == Paths{L"C:\\Program Files\\Brackenfold\\"});
    REQUIRE(state.task_calls.size() == 2);
    CHECK(state.task_calls[1] == L"schtasks /Delete /F /TN \"Brackenfold\\FWC Updater\"");
    CHECK_FALSE(is_there(watched_shortcut()));
    CHECK_FALSE(key_is_there(console_uninstall_key));
}

TEST_CASE("on a machine without the console every step is reported all the same") {
    write_file(L"C:\\schtasks.exit", "1");
    CHECK(uninstall() == all_removed());
    CHECK_FALSE(is_there(L"C:\\Program Files\\Brackenfold"));
}

TEST_CASE("a running console goes at the next start and its other files at once") {
    install_samples();
    write_file(console_dir + L"\\data\\used.txt", "x");
    const StartedProgram console(console_dir + L"\\Fortwright.exe", L"60000");
    const OwnedFile in_use = lock_file(console_dir + L"\\data\\used.txt");
    CHECK(uninstall() == all_removed(at_reboot));
    CHECK(pending_deletions() == Paths{console_dir + L"\\data\\used.txt", console_dir + L"\\Fortwright.exe"});
    CHECK(paths_below(console_dir) == Paths{L"data\\", L"data\\used.txt", L"Fortwright.exe"});
    CHECK_FALSE(key_is_there(console_uninstall_key));
}

TEST_CASE("the installed updater removes everything but itself until the next start") {
    write_file(console_dir + L"\\Fortwright.exe", "x");
    copy_file(test_program(), console_dir + L"\\updater.exe");
    const StartedProgram uninstaller(console_dir + L"\\updater.exe", L"--uninstall",
                                     {{role_variable, role_remove_console}});
    CHECK(uninstaller.exit_code() == 1); // true
    CHECK(reports_of_child() == all_removed(at_reboot));
    CHECK(pending_deletions() == Paths{console_dir + L"\\updater.exe"});
    CHECK(paths_below(console_dir) == Paths{L"updater.exe"});
}

TEST_CASE("neither a missing desktop nor a command that cannot start changes a report") {
    install_samples();
    {
        const InterceptedCall missing("SHGetFolderPathW", no_desktop_folder);
        const InterceptedCall no_command("CreateProcessW", no_process);
        CHECK(uninstall() == all_removed());
    }
    CHECK(is_there(watched_shortcut()));
    CHECK_FALSE(is_there(console_dir));
}

TEST_CASE("a folder whose existence cannot be told is left to the next start") {
    install_samples();
    {
        const InterceptedCall denied("GetFileAttributesW", console_denied);
        CHECK(uninstall() == all_removed(at_reboot));
    }
    CHECK(pending_deletions() == Paths{console_dir + L"\\Fortwright.exe", console_dir + L"\\updater.exe",
                                       console_dir + L"\\WebView2Loader.dll"});
    CHECK(paths_below(console_dir).size() == 3);
}
