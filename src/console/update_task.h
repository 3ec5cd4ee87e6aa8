#pragma once

#include <string>

#include "common/progress_fn.h"

/// Command lines for cmd.exe that make and remove the weekly update task.
std::wstring create_task_command_line(const std::wstring& updater_path);
std::wstring delete_task_command_line();

/// Schedules the weekly run of the updater as SYSTEM, replacing an earlier task. Reports that it was done
/// when the command could be started, whatever came of it; reports nothing otherwise. Waits up to 15 s.
void schedule_weekly_update(const ProgressFn& progress);

/// Removes the task and reports it, whatever came of it. Waits up to 10 s.
void remove_weekly_update(const ProgressFn& progress);
