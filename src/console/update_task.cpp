#include "console/update_task.h"

#include "common/paths.h"
#include "common/process.h"
#include "console/product.h"

namespace {

constexpr unsigned long create_timeout_ms = 15000;
constexpr unsigned long delete_timeout_ms = 10000;

} // namespace

std::wstring create_task_command_line(const std::wstring& updater_path) {
    // The quotes with a backslash reach schtasks as quotes inside the task's own command.
    return std::wstring(L"/C schtasks /Create /F /TN \"") + fwc_task_name + L"\" /TR \"\\\"" + updater_path +
           L"\\\"\" /SC WEEKLY /D SUN /ST 03:00 /RL HIGHEST /RU SYSTEM";
}

std::wstring delete_task_command_line() {
    return std::wstring(L"/C schtasks /Delete /F /TN \"") + fwc_task_name + L"\"";
}

void schedule_weekly_update(const ProgressFn& progress) {
    const std::wstring updater_path = join_path(fwc_install_dir(), fwc_updater_name);
    if (run_hidden_command(create_task_command_line(updater_path), create_timeout_ms)) {
        progress("Scheduled weekly update", true);
    }
}

void remove_weekly_update(const ProgressFn& progress) {
    // Not started is no failure: without the command there is no task either.
    run_hidden_command(delete_task_command_line(), delete_timeout_ms);
    progress("Removed scheduled task", true);
}
