#pragma once

#include "machine_state.h"

/// Every call that the recorder in place of schtasks.exe wrote down, oldest first.
std::vector<std::wstring> read_task_calls();

/// The task that these calls leave: the last one created and not deleted since.
std::optional<ScheduledTask> task_after(const std::vector<std::wstring>& calls);
