// Takes a machine through every way of installing and removing the sample products and judges what it holds
// after each step. acceptance.exe --help explains. Has none of the installer's code: what the machine holds
// is read by the machine report, and what it must hold is written down in this folder.
#include <exception>
#include <string>
#include <vector>

#include <windows.h>
#include <objbase.h>

#include "change_files.h"
#include "console.h"
#include "kit.h"
#include "options.h"
#include "result_json.h"
#include "result_table.h"
#include "steps.h"
#include "text_forms.h"
#include "this_system.h"

namespace {

enum ExitCode { all_as_expected = 0, something_different = 1, bad_arguments = 2, not_on_this_machine = 3 };

bool has_administrator_rights() {
    BYTE administrators[SECURITY_MAX_SID_SIZE] = {};
    DWORD size = sizeof administrators;
    BOOL is_member = FALSE;
    return CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, administrators, &size) != FALSE &&
           CheckTokenMembership(nullptr, administrators, &is_member) != FALSE && is_member != FALSE;
}

// Why the machine is refused; nothing when it is not.
std::vector<std::wstring> objections_to_machine(const AcceptanceOptions& options, const MachineState& state) {
    if (!has_administrator_rights()) {
        return {L"this needs administrator rights; start it from an elevated prompt"};
    }
    std::vector<std::wstring> traces = traces_of_products(state);
    if (traces.empty() || options.removes_first) {
        return {};
    }
    traces.insert(traces.begin(), L"this machine has the products already, and --remove-first is not given:");
    return traces;
}

std::vector<std::wstring> objections_to_arguments(const AcceptanceOptions& options, const Kit& kit) {
    if (!options.complaint.empty()) {
        return {options.complaint + L"; --help explains"};
    }
    if (!options.may_be_thrown_away) {
        return {
            L"this ends browsers, installs a service and changes the machine's registry; on a machine that",
            L"may be thrown away, say so: --this-machine-may-be-thrown-away (--help explains)"};
    }
    std::vector<std::wstring> missing;
    for (const std::wstring& part : missing_parts(kit)) {
        missing.push_back(L"the kit lacks " + part);
    }
    return missing;
}

ExitCode refuse(const std::vector<std::wstring>& objections, ExitCode code) {
    for (const std::wstring& objection : objections) {
        complain(objection);
    }
    return code;
}

std::wstring full_path(const std::wstring& path) {
    std::wstring full(32767, L'\0');
    full.resize(GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    return full;
}

ExitCode judge(const Kit& kit, const AcceptanceOptions& options, const std::wstring& report) {
    const MachineState before = read_machine_state();
    if (const auto objections = objections_to_machine(options, before); !objections.empty()) {
        return refuse(objections, not_on_this_machine);
    }
    const std::wstring cannot_write = L"the report cannot be written: " + report;
    if (!write_file(report, "")) {
        return refuse({cannot_write}, bad_arguments);
    }
    const std::wstring wine = wine_version();
    print(L"Judging " + kit.program + L"\non Windows " + windows_version() +
          (wine.empty() ? L"" : L", which is Wine " + wine) + L"\n\n");
    const Results results =
        run_steps(kit, options, before, [](const std::wstring& line) { print(line + L"\n"); });
    print(L"\n" + result_table(results));
    const bool is_written = write_file(report, result_json(results));
    if (!is_written) {
        complain(cannot_write);
    }
    const bool is_different = count_of(results, Outcome::different) > 0;
    print(L"\n" + std::wstring(is_different ? L"NOT AS EXPECTED" : L"All as expected") + L". Report: " +
          report + L"\n");
    return is_different || !is_written ? something_different : all_as_expected;
}

} // namespace

int wmain(int argument_count, wchar_t** arguments) {
    AcceptanceOptions options = read_options({arguments + 1, arguments + argument_count});
    if (options.wants_help && options.complaint.empty()) {
        print(help_text());
        return all_as_expected;
    }
    const Kit kit = this_kit(options.program.empty() ? L"" : full_path(options.program));
    if (const auto objections = objections_to_arguments(options, kit); !objections.empty()) {
        return refuse(objections, bad_arguments);
    }
    const std::wstring report =
        options.report.empty() ? kit.folder + L"\\acceptance.json" : full_path(options.report);
    // Without COM neither shortcut nor task can be read, and every step is different.
    const HRESULT com = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    ExitCode code = something_different;
    try {
        code = judge(kit, options, report);
    } catch (const std::exception& error) {
        complain(wide_from_utf8(error.what()));
    }
    if (SUCCEEDED(com)) {
        CoUninitialize();
    }
    return code;
}
