#include "expected_state.h"

#include <windows.h>

#include "expected_files.h"
#include "expected_registry.h"
#include "places.h"
#include "product_facts.h"
#include "this_system.h"

namespace {

void add_service(Facts& facts, const std::wstring& state) {
    Service service;
    service.name = service_name;
    service.display_name = linkward_name;
    service.description = service_description;
    service.program = linkward_folder() + L"\\" + service_program;
    service.account = L"LocalSystem";
    service.start_type = L"automatic";
    service.state = state;
    service.service_type = SERVICE_WIN32_OWN_PROCESS;
    service.error_control = SERVICE_ERROR_NORMAL;
    service.reset_period_seconds = reset_period_s;
    for (const unsigned long delay_ms : restart_delays_ms) {
        service.actions.push_back({L"restart", delay_ms});
    }
    add_service_facts(facts, service);
}

void add_task(Facts& facts) {
    const std::wstring updater = console_folder() + L"\\" + console_copy_name;
    ScheduledTask task = {task_name,    L"\"" + updater + L"\"", task_schedule,
                          task_account, task_run_level,          {}};
    if (is_wine()) {
        task.recorded = task_command_begin + updater + task_command_end;
    }
    add_task_facts(facts, task);
}

void add_shortcut(Facts& facts) {
    const std::wstring target = console_folder() + L"\\" + console_program;
    add_shortcut_facts(facts, {desktop_shortcut(), target, L"", console_name, target, 0, console_folder()});
}

void add_waiting_copy(Facts& facts, const std::wstring& program) {
    add_folder_fact(facts, program_root());
    add_folder_fact(facts, linkward_folder());
    add_copy_fact(facts, linkward_copy(), program);
    add_pending_fact(facts, {linkward_copy(), L""});
}

} // namespace

Facts expected_facts(const Wanted& wanted, const Ground& ground) {
    Facts facts;
    add_untouched_facts(facts, ground);
    if (wanted.copy_waits_for_start) {
        add_waiting_copy(facts, wanted.program);
    }
    if (wanted.has_console || wanted.has_linkward) {
        add_folder_fact(facts, program_root());
    }
    if (wanted.has_console || wanted.console_was_tried) {
        add_folder_fact(facts, console_folder());
    }
    if (wanted.has_console) {
        add_console_files(facts, wanted.medium, wanted.program);
        add_console_entry(facts, wanted.possible_dates);
        add_task(facts);
        add_shortcut(facts);
    }
    if (wanted.has_linkward) {
        add_linkward_files(facts, wanted.medium, wanted.program);
        add_linkward_entry(facts);
        add_native_messaging(facts);
        add_service(facts, wanted.service_state);
    }
    if (is_wine()) {
        // Never found: see not_on_wine.
        add_fact(facts, L"update task", L"in Task Scheduler", wanted.has_console ? L"as told" : L"nothing");
    }
    return facts;
}
