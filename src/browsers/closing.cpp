#include "browsers/closing.h"

#include <algorithm>
#include <string>
#include <vector>

#include <windows.h>
#include <tlhelp32.h>

#include "browsers/catalogue.h"
#include "common/owned.h"
#include "common/pause.h"
#include "common/text.h"

namespace {

constexpr DWORD process_end_timeout_ms = 3000;
/// Browsers need a moment to let go of their files after the last process has gone.
constexpr DWORD settle_pause_ms = 1500;

struct MatchedProcess {
    DWORD id = 0;
    std::wstring name;
};

std::vector<std::wstring> browser_program_names() {
    std::vector<std::wstring> names;
    for (const BrowserInfo& browser : known_browsers) {
        const std::wstring name = to_lower(browser.exe_name);
        if (std::find(names.begin(), names.end(), name) == names.end()) {
            names.push_back(name);
        }
    }
    return names;
}

std::vector<MatchedProcess> running_browsers(HANDLE snapshot) {
    const std::vector<std::wstring> names = browser_program_names();
    std::vector<MatchedProcess> matched;
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof(entry);
    for (BOOL more = Process32FirstW(snapshot, &entry); more != FALSE;
         more = Process32NextW(snapshot, &entry)) {
        const std::wstring name = to_lower(entry.szExeFile);
        if (std::find(names.begin(), names.end(), name) != names.end()) {
            matched.push_back({entry.th32ProcessID, name});
        }
    }
    return matched;
}

bool end_process(DWORD id) {
    const OwnedHandle process(OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, id));
    if (!process || TerminateProcess(process.get(), 0) == FALSE) {
        return false;
    }
    // A process that has not gone in time counts all the same: it has been told to end.
    WaitForSingleObject(process.get(), process_end_timeout_ms);
    return true;
}

} // namespace

int close_browsers(const ProgressFn& progress) {
    OwnedFile snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    if (!snapshot) {
        return 0;
    }
    const std::vector<MatchedProcess> matched = running_browsers(snapshot.get());
    snapshot.reset();

    int closed = 0;
    for (const MatchedProcess& process : matched) {
        if (end_process(process.id)) {
            ++closed;
        }
    }
    if (closed == 0) {
        // Also when browsers run that may not be ended: there is nothing the user could do about them here.
        progress("No browsers running", true);
        return 0;
    }
    progress("Closed " + std::to_string(closed) + " browser process(es)", true);
    g_pause(settle_pause_ms);
    return closed;
}
