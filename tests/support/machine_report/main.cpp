// Says what a machine holds of the two products: files, registry, service,
// scheduled task, shortcut, native messaging hosts, what waits for a restart.
//
//   machine_report.exe           for people
//   machine_report.exe --json    for tests, as one JSON object
//
// UTF-8 on standard output. Exit code 0, or 2 for an argument it does not know.
#include <cstdio>
#include <cstring>

#include <objbase.h>

#include "json_report.h"
#include "text_forms.h"
#include "text_report.h"

int main(int argument_count, char** arguments) {
    const bool as_json = argument_count == 2 && std::strcmp(arguments[1], "--json") == 0;
    if (argument_count > 1 && !as_json) {
        std::fputs("machine_report: the only argument is --json\n", stderr);
        return 2;
    }
    // Without COM the shortcut cannot be read and is reported as missing.
    const HRESULT com = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    const MachineState state = read_machine_state();
    if (SUCCEEDED(com)) {
        CoUninitialize();
    }
    const std::string report = as_json ? json_report(state) : utf8_from_wide(text_report(state));
    // Straight to the handle: text mode would turn every line end into two characters.
    DWORD written = 0;
    const BOOL done = WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), report.data(),
                                static_cast<DWORD>(report.size()), &written, nullptr);
    return done != FALSE ? 0 : 1;
}
