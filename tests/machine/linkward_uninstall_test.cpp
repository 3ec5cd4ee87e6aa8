#include <doctest/doctest.h>
#include <string>
#include <vector>

#include <windows.h>

#include "child_roles.h"
#include "common/installation_medium.h"
#include "expected_browsers.h"
#include "intercepted_call.h"
#include "linkward/install.h"
#include "linkward/uninstall.h"
#include "machine_state.h"
#include "recorded_pauses.h"
#include "recorded_reports.h"
#include "started_program.h"
#include "stopped_service.h"
#include "test_files.h"
#include "test_registry.h"

namespace {

using Paths = std::vector<std::wstring>;

const std::wstring install_dir = L"C:\\Program Files\\Brackenfold\\Veyra Linkward";
const std::wstring data_dir = L"C:\\ProgramData\\Brackenfold\\Veyra Linkward";
const std::wstring distribution = L"C:\\Program Files\\Mozilla Firefox\\distribution\\extensions";
const std::wstring addon_id = L"veyra-linkward@apps.brackenfold.example";
const std::wstring firefox_policy = L"SOFTWARE\\Policies\\Mozilla\\Firefox\\Extensions";

Reports all_removed(const char* files_report = "Files removed") {
    return {{"Service removed", true},
            {"Native messaging removed", true},
            {"Extension policies cleaned", true},
            {files_report, true},
            {"Uninstall complete", true}};
}

const char* const at_reboot = "Files marked for removal on reboot";

Reports uninstall() {
    RecordedReports reports;
    CHECK(uninstall_linkward(reports.progress) == 0);
    return reports.all;
}

void install_samples() {
    g_source_dir = sample_products();
    RecordedReports reports;
    REQUIRE(install_linkward(reports.progress));
}

DWORD WINAPI program_files_denied(LPCWSTR path) {
    if (std::wstring(path).find(L"Brackenfold") != std::wstring::npos ||
        std::wstring(path).find(L"Mozilla") != std::wstring::npos) {
        SetLastError(ERROR_ACCESS_DENIED);
        return INVALID_FILE_ATTRIBUTES;
    }
    return real_function<decltype(GetFileAttributesW)>("GetFileAttributesW")(path);
}

} // namespace

TEST_CASE("an installed product goes whole and leaves only the keys and folders above it") {
    install_samples();
    REQUIRE_FALSE(is_empty(read_machine_state()));
    RecordedPauses pauses;
    pauses.during = [&] { wait_for_stopped_service(pauses.all.back()); };
    CHECK(uninstall() == all_removed());
    CHECK(pauses.all == std::vector<unsigned long>{2000});
    const MachineState state = read_machine_state();
    CHECK(is_empty(state));
    Paths expected = {L"C:\\Program Files\\Brackenfold\\", L"C:\\ProgramData\\Brackenfold\\"};
    for (const ExpectedBrowser& browser : expected_browsers) {
        expected.push_back(L"HKLM\\SOFTWARE\\" + browser.settings + L"\\NativeMessagingHosts");
    }
    expected.emplace_back(L"HKLM\\SOFTWARE\\Mozilla\\NativeMessagingHosts");
    CHECK(state.left_behind == expected);
}

TEST_CASE("on a machine without the product every step is reported all the same") {
    RecordedPauses pauses;
    CHECK(uninstall() == all_removed());
    CHECK(pauses.all.empty());
    const MachineState state = read_machine_state();
    CHECK(is_empty(state));
    CHECK(state.left_behind.empty());
}

TEST_CASE("files in use go at the next start and everything else at once") {
    install_samples();
    write_file(install_dir + L"\\rules\\categories\\also in use.txt", "x");
    RecordedPauses pauses;
    pauses.during = [&] { wait_for_stopped_service(pauses.all.back()); };
    {
        const OwnedFile in_use = lock_file(install_dir + L"\\rules\\exceptions.txt");
        const OwnedFile deep = lock_file(install_dir + L"\\rules\\categories\\also in use.txt");
        CHECK(uninstall() == all_removed(at_reboot));
    }
    CHECK(pending_deletions() == Paths{install_dir + L"\\rules\\categories\\also in use.txt",
                                       install_dir + L"\\rules\\exceptions.txt"});
    CHECK(paths_below(install_dir) == Paths{L"rules\\", L"rules\\categories\\",
                                            L"rules\\categories\\also in use.txt", L"rules\\exceptions.txt"});
    CHECK_FALSE(is_there(data_dir));
    CHECK_FALSE(key_is_there(L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\VeyraLinkward"));
}

TEST_CASE("the installed copy removes everything but itself until the next start") {
    write_file(install_dir + L"\\VeyraLinkward.exe", "x");
    write_file(install_dir + L"\\rules\\a.txt", "x");
    write_file(data_dir + L"\\a.vybf", "x");
    const std::wstring copy = install_dir + L"\\VeyraLinkwardInstaller.exe";
    copy_file(test_program(), copy);
    const StartedProgram uninstaller(copy, L"--uninstall", {{role_variable, role_remove_linkward}});
    CHECK(uninstaller.exit_code() == 0);
    CHECK(reports_of_child() == all_removed(at_reboot));
    CHECK(pending_deletions() == Paths{copy});
    CHECK(paths_below(install_dir) == Paths{L"VeyraLinkwardInstaller.exe"});
    CHECK_FALSE(is_there(data_dir));
}

TEST_CASE("a service that does not stop keeps its program until the next start") {
    g_source_dir = copy_of_sample_products();
    write_file(g_source_dir + L"\\VeyraLinkward.behaviour", "ignore_stop_ms 60000\n");
    RecordedReports reports;
    REQUIRE(install_linkward(reports.progress));
    RecordedPauses pauses;
    CHECK(uninstall() == all_removed(at_reboot));
    CHECK(pauses.all == std::vector<unsigned long>{2000});
    CHECK(pending_deletions() == Paths{install_dir + L"\\VeyraLinkward.exe"});
    CHECK(paths_below(install_dir) == Paths{L"VeyraLinkward.exe"});
}

TEST_CASE("links below the install folder are neither followed nor scheduled") {
    write_file(L"C:\\elsewhere\\precious.txt", "precious");
    write_file(install_dir + L"\\a.txt", "x");
    make_link(install_dir + L"\\link", L"C:\\elsewhere");
    make_folder(data_dir);
    make_link(data_dir + L"\\link", L"C:\\elsewhere");
    // Wine cannot take such a link away; Windows can.
    CHECK(uninstall() == all_removed(at_reboot));
    CHECK(bytes_of(L"C:\\elsewhere\\precious.txt") == "precious");
    CHECK(pending_deletions().empty());
    CHECK(paths_below(install_dir) == Paths{L"link\\"});
}

TEST_CASE("all three extension ids leave the policies of all browsers") {
    Paths policies;
    for (const ExpectedBrowser& browser : expected_browsers) {
        policies.push_back(browser.settings);
    }
    const Paths ids = {L"kembcdlbgbcnnchcnbdhbmbhbejnedjf", L"ckklpoccipcbjojmlaolfdpbgjehmmpc",
                       L"dgldcbgpnkooljhfhcjpkojcdnfkepnb"};
    for (const std::wstring& browser : policies) {
        const std::wstring policy = L"SOFTWARE\\Policies\\" + browser;
        for (const std::wstring& id : ids) {
            set_text(policy + L"\\ExtensionInstallForcelist", id.substr(0, 2),
                     id + L";https://updates.example");
            set_text(policy + L"\\ExtensionInstallAllowlist", id.substr(0, 2), id);
            set_text(policy + L"\\ExtensionSettings\\" + id, L"x", L"x");
            set_text(L"SOFTWARE\\" + browser + L"\\Extensions\\" + id, L"path", L"x");
        }
        set_text(policy + L"\\ExtensionInstallForcelist", L"other", L"abcdefghijklmnopabcdefghijklmnop");
        set_text(policy + L"\\ExtensionInstallSources", L"1", L"file:///x");
        set_text(policy + L"\\ExtensionInstallSources", L"other", L"https://x.example/");
    }
    CHECK(uninstall() == all_removed());
    for (const std::wstring& browser : policies) {
        const std::wstring policy = L"SOFTWARE\\Policies\\" + browser;
        CHECK(value_names(policy + L"\\ExtensionInstallForcelist") == Paths{L"other"});
        CHECK(value_names(policy + L"\\ExtensionInstallAllowlist").empty());
        CHECK(value_names(policy + L"\\ExtensionInstallSources") == Paths{L"other"});
        CHECK(subkeys_of(policy + L"\\ExtensionSettings").empty());
        CHECK(subkeys_of(L"SOFTWARE\\" + browser + L"\\Extensions").empty());
    }
}

TEST_CASE("the Firefox policy key and the distribution entry go whole and their neighbours stay") {
    {
        set_text(firefox_policy + L"\\Install", L"1", L"https://ours.example/addon.xpi");
        set_text(firefox_policy + L"\\Install", L"2", L"https://theirs.example/other.xpi");
        set_text(firefox_policy + L"\\Install\\deeper", L"1", L"x");
        set_text(firefox_policy + L"\\Locked", L"1", L"stays");
        CHECK(uninstall() == all_removed());
        CHECK(subkeys_of(firefox_policy) == Paths{L"Locked"});
    }
    {
        write_file(distribution + L"\\" + addon_id, "as a file", FILE_ATTRIBUTE_READONLY);
        write_file(distribution + L"\\" + addon_id + L".xpi", "stays");
        write_file(distribution + L"\\other@addon.example\\manifest.json", "stays");
        const Paths neighbours = {L"other@addon.example\\", L"other@addon.example\\manifest.json",
                                  addon_id + L".xpi"};
        CHECK(uninstall() == all_removed());
        CHECK(paths_below(distribution) == neighbours);
        write_file(distribution + L"\\" + addon_id + L"\\deep\\manifest.json", "as a folder");
        CHECK(uninstall() == all_removed());
        CHECK(paths_below(distribution) == neighbours);
    }
}

TEST_CASE("what cannot be removed beside the install folder is passed over in silence") {
    write_file(distribution + L"\\" + addon_id + L"\\used.js", "x");
    write_file(distribution + L"\\" + addon_id + L"\\free.js", "x");
    write_file(data_dir + L"\\used.vybf", "x");
    write_file(data_dir + L"\\logs\\free.log", "x");
    write_file(install_dir + L"\\a.txt", "x");
    {
        const OwnedFile addon = lock_file(distribution + L"\\" + addon_id + L"\\used.js");
        const OwnedFile data = lock_file(data_dir + L"\\used.vybf");
        CHECK(uninstall() == all_removed());
    }
    CHECK(paths_below(distribution + L"\\" + addon_id) == Paths{L"used.js"});
    CHECK(paths_below(data_dir) == Paths{L"used.vybf"});
    CHECK_FALSE(is_there(install_dir));
    CHECK(pending_deletions().empty());

    // The same for tests of existence that get no answer.
    write_file(install_dir + L"\\a.txt", "x");
    {
        const InterceptedCall denied("GetFileAttributesW", program_files_denied);
        CHECK(uninstall() == all_removed(at_reboot));
    }
    CHECK(pending_deletions() == Paths{install_dir + L"\\a.txt"});
}
