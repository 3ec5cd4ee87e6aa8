// The order of those steps that no report shows, seen at the calls to Windows.
// Fixed behaviour: the order itself is prescribed, not a habit of the code.

#include <doctest/doctest.h>
#include <string>
#include <vector>

#include <windows.h>

#include "before_each_case.h"
#include "console/uninstall.h"
#include "expected_browsers.h"
#include "intercepted_call.h"
#include "linkward/native_messaging.h"
#include "linkward/uninstall.h"
#include "readable.h"

namespace {

using Steps = std::vector<std::wstring>;

// Written by the stand-ins below, on the test's thread.
Steps g_steps;
const BeforeEachCase start_anew([] { g_steps.clear(); });

LSTATUS WINAPI noted_open(HKEY root, LPCWSTR path, DWORD options, REGSAM access, PHKEY key) {
    g_steps.emplace_back(path);
    return real_function<decltype(RegOpenKeyExW)>("RegOpenKeyExW")(root, path, options, access, key);
}

LSTATUS WINAPI noted_create(HKEY root, LPCWSTR path, DWORD reserved, LPWSTR type, DWORD options,
                            REGSAM access, LPSECURITY_ATTRIBUTES security, PHKEY key, LPDWORD disposition) {
    g_steps.emplace_back(path);
    return real_function<decltype(RegCreateKeyExW)>("RegCreateKeyExW")(root, path, reserved, type, options,
                                                                       access, security, key, disposition);
}

DWORD WINAPI noted_attributes(LPCWSTR path) {
    g_steps.emplace_back(path);
    return real_function<decltype(GetFileAttributesW)>("GetFileAttributesW")(path);
}

BOOL WINAPI noted_command(LPCWSTR program, LPWSTR command_line, LPSECURITY_ATTRIBUTES process,
                          LPSECURITY_ATTRIBUTES thread, BOOL inherit, DWORD flags, LPVOID environment,
                          LPCWSTR directory, LPSTARTUPINFOW startup, LPPROCESS_INFORMATION information) {
    g_steps.emplace_back(command_line);
    return real_function<decltype(CreateProcessW)>("CreateProcessW")(
        program, command_line, process, thread, inherit, flags, environment, directory, startup, information);
}

BOOL WINAPI noted_delete(LPCWSTR path) {
    // Where the desktop lies is the user's business.
    const std::wstring text = path;
    g_steps.push_back(L"delete " + text.substr(text.rfind(L'\\') + 1));
    return real_function<decltype(DeleteFileW)>("DeleteFileW")(path);
}

void note_report(const std::string& text, bool ok) {
    g_steps.push_back((ok ? L"report " : L"FAILURE ") + std::wstring(text.begin(), text.end()));
}

const Steps host_keys = [] {
    Steps keys;
    for (const ExpectedBrowser& browser : expected_browsers) {
        keys.push_back(L"SOFTWARE\\" + browser.settings + L"\\NativeMessagingHosts\\com.veyra.linkward");
    }
    keys.emplace_back(L"SOFTWARE\\Mozilla\\NativeMessagingHosts\\com.veyra.linkward");
    return keys;
}();

/// What is opened to clean one browser: list by list and key by key, for each id in turn.
Steps policy_steps(const std::wstring& vendor) {
    Steps steps;
    for (const wchar_t* const id : {L"kembcdlbgbcnnchcnbdhbmbhbejnedjf", L"ckklpoccipcbjojmlaolfdpbgjehmmpc",
                                    L"dgldcbgpnkooljhfhcjpkojcdnfkepnb"}) {
        const std::wstring policies = L"SOFTWARE\\Policies\\" + vendor;
        steps.push_back(policies + L"\\ExtensionInstallForcelist");
        steps.push_back(policies + L"\\ExtensionInstallAllowlist");
        steps.push_back(policies + L"\\ExtensionInstallSources");
        steps.push_back(policies + L"\\ExtensionSettings\\" + id);
        steps.push_back(L"SOFTWARE\\" + vendor + L"\\Extensions\\" + id);
    }
    return steps;
}

void append(Steps& steps, const Steps& more) {
    steps.insert(steps.end(), more.begin(), more.end());
}

} // namespace

TEST_CASE("the removal of the web protection takes its steps in their order") {
    Steps wanted = {L"report Service removed"};
    append(wanted, host_keys);
    wanted.emplace_back(L"report Native messaging removed");
    for (const ExpectedBrowser& browser : expected_browsers) {
        append(wanted, policy_steps(browser.settings));
    }
    const std::wstring distribution = L"C:\\Program Files\\Mozilla Firefox\\distribution\\extensions";
    append(wanted, {L"report Extension policies cleaned",
                    L"SOFTWARE\\Policies\\Mozilla\\Firefox\\Extensions\\Install",
                    distribution + L"\\veyra-linkward@apps.brackenfold.example",
                    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\VeyraLinkward",
                    L"C:\\Program Files\\Brackenfold\\Veyra Linkward", L"report Files removed",
                    L"C:\\ProgramData\\Brackenfold\\Veyra Linkward", L"report Uninstall complete"});

    const InterceptedCall open("RegOpenKeyExW", noted_open);
    const InterceptedCall attributes("GetFileAttributesW", noted_attributes);
    CHECK(uninstall_linkward(note_report) == 0);
    CHECK(g_steps == wanted);
}

TEST_CASE("the removal of the console takes its steps in their order") {
    const InterceptedCall command("CreateProcessW", noted_command);
    const InterceptedCall remove("DeleteFileW", noted_delete);
    const InterceptedCall open("RegOpenKeyExW", noted_open);
    const InterceptedCall attributes("GetFileAttributesW", noted_attributes);
    CHECK(uninstall_fwc(note_report));
    CHECK(g_steps == Steps{L"/C schtasks /Delete /F /TN \"Brackenfold\\FWC Updater\"",
                           L"report Removed scheduled task", L"delete Fortwright Console.lnk",
                           L"report Removed desktop shortcut",
                           L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\FortwrightConsole",
                           L"report Removed registry entries", L"C:\\Program Files\\Brackenfold\\FWC",
                           L"report FWC files removed", L"report FWC uninstall complete"});
}

TEST_CASE("the native messaging host is registered in the order of the catalogue and for Firefox last") {
    const InterceptedCall create("RegCreateKeyExW", noted_create);
    register_native_messaging_hosts(note_report);
    Steps wanted = host_keys;
    wanted.emplace_back(L"report Native messaging hosts registered");
    CHECK(g_steps == wanted);
}
