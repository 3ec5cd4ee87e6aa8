#include "steps.h"

#include <utility>

#include <windows.h>

#include "damage.h"
#include "expected_state.h"
#include "installer_window.h"
#include "medium.h"
#include "places.h"
#include "product_facts.h"
#include "read_files.h"
#include "read_registry.h"
#include "run_program.h"
#include "settled_state.h"
#include "sha256.h"

namespace {

using Meanwhile = std::function<Facts(const RunningProgram&)>;

// One after the other does something to the machine and compares what it holds then.
class Run {
  public:
    Run(const Kit& kit, const AcceptanceOptions& options, const MachineState& before,
        const std::function<void(const std::wstring&)>& tell)
        : kit_(kit), options_(options), ground_(ground_of(before)), tell_(tell), media_(kit) {
        results_.program = kit.program;
        // Throws, if it does, before anything has been done.
        results_.program_sha256 = sha256(read_file(kit.program).value_or(""));
    }

    // Starts a command and expects of it this exit code and of the machine what `wanted` says.
    // `expected_meanwhile` is what `meanwhile` is to see.
    void step(const std::wstring& name, const std::wstring& command, DWORD exit_code, Wanted wanted,
              const Meanwhile& meanwhile = {}, const Facts& expected_meanwhile = {}) {
        tell_(name + L" ...");
        const ULONGLONG start_ms = GetTickCount64();
        wanted.possible_dates = {today()};
        Facts seen;
        const ProgramEnd end = run_program(command, options_.limit_s, [&](const RunningProgram& program) {
            if (meanwhile) {
                seen = meanwhile(program);
            }
        });
        wanted.possible_dates.push_back(today());
        add_fact(seen, L"program", L"exit code", end_text(end, options_.limit_s));
        run_after_step(name);

        const MachineState state = read_settled_state(options_.limit_s);
        if (wanted.copy_waits_for_start) {
            wanted.copy_waits_for_start = read_file(linkward_copy()).has_value();
        }
        Facts found = found_facts(state, ground_);
        found.insert(seen.begin(), seen.end());
        Facts expected = expected_facts(wanted, ground_);
        expected.insert(expected_meanwhile.begin(), expected_meanwhile.end());
        add_fact(expected, L"program", L"exit code", std::to_wstring(exit_code));

        results_.steps.push_back(
            {name, command, GetTickCount64() - start_ms, compare(expected, found, not_on_wine())});
        tell_(L"    " + counts_text(results_.steps.back().rows));
    }

    // The same with the window, which is closed as soon as it shows.
    void window_step(const std::wstring& name, const std::wstring& command, const Wanted& wanted) {
        step(name, command, 0, wanted, see_and_close_window, expected_window());
    }

    [[nodiscard]] const Media& media() const { return media_; }
    [[nodiscard]] Results take_results() { return std::move(results_); }

    // What an installation leads to. The bytes are the kit's: those of the media could have been changed.
    [[nodiscard]] Wanted both() const {
        Wanted wanted;
        wanted.has_console = true;
        wanted.has_linkward = true;
        wanted.medium = kit_.products;
        wanted.program = kit_.program;
        return wanted;
    }

    [[nodiscard]] std::wstring installer(const std::wstring& options) const {
        return L"\"" + media_.installer() + L"\"" + (options.empty() ? L"" : L" ") + options;
    }

  private:
    static std::wstring today() {
        SYSTEMTIME now = {};
        GetLocalTime(&now);
        return std::to_wstring(now.wYear * 10000 + now.wMonth * 100 + now.wDay);
    }

    void run_after_step(const std::wstring& name) const {
        if (!options_.after_step.empty()) {
            SetEnvironmentVariableW(L"ACCEPTANCE_STEP", name.c_str());
            run_program(L"cmd.exe /s /c \"" + options_.after_step + L"\"", options_.limit_s);
            SetEnvironmentVariableW(L"ACCEPTANCE_STEP", nullptr);
        }
    }

    const Kit& kit_;
    const AcceptanceOptions& options_;
    Ground ground_;
    const std::function<void(const std::wstring&)>& tell_;
    Media media_;
    Results results_;
};

// The command that Add/Remove Programs would start; the text stands there without quotes.
std::wstring registered_removal() {
    const std::wstring entry = std::wstring(uninstall_root) + linkward_entry_name;
    for (const RegistryKey& key : read_keys(L"", entry, false)) {
        for (const RegistryValue& value : key.values) {
            if (value.name == L"QuietUninstallString") {
                return value.text;
            }
        }
    }
    return L"(no QuietUninstallString)";
}

} // namespace

Results run_steps(const Kit& kit, const AcceptanceOptions& options, const MachineState& before,
                  const std::function<void(const std::wstring&)>& tell) {
    Run run(kit, options, before, tell);
    const Wanted nothing;
    const std::wstring install = run.installer(L"--silent");
    const std::wstring remove = run.installer(L"--uninstall");
    const auto install_from = [&](const std::wstring& medium) {
        return run.installer(L"--silent --source \"" + medium + L"\"");
    };

    if (!traces_of_products(before).empty()) {
        run.step(L"removal of what was there", remove, 0, nothing);
    }
    run.step(L"installation", install, 0, run.both());

    damage_installation();
    run.step(L"installation over a damaged one", install, 0, run.both());
    run.step(L"removal", remove, 0, nothing);

    Wanted web_protection_alone = run.both();
    web_protection_alone.has_console = false;
    web_protection_alone.console_was_tried = true;
    run.step(L"installation without the console's program", install_from(run.media().incomplete()), 1,
             web_protection_alone);

    Wanted with_stopped_service = run.both();
    with_stopped_service.medium = run.media().with_failing_service();
    with_stopped_service.service_state = L"stopped";
    run.step(L"installation of a service that fails", install_from(run.media().with_failing_service()), 0,
             with_stopped_service);
    run.step(L"removal of a stopped service", remove, 0, nothing);

    run.step(L"installation once more", install, 0, run.both());
    Wanted nothing_but_copy;
    nothing_but_copy.program = kit.program;
    nothing_but_copy.copy_waits_for_start = true;
    run.step(L"removal by the installed copy", registered_removal(), 0, nothing_but_copy);
    run.step(L"installation before the next start", install, 0, run.both());

    run.window_step(L"window", run.installer(L""), run.both());
    run.window_step(L"window of the removal", run.installer(L"--uninstall-gui"), run.both());
    run.step(L"last removal", remove, 0, nothing);
    return run.take_results();
}
