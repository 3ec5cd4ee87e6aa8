#pragma once

#include "machine_state.h"

/// A task as the system's own Task Scheduler has it; nothing when there is none. `name` holds its folders,
/// such as L"Maker\\Job". When Task Scheduler does not answer, the reason is in the place of the command.
/// Needs COM on the thread.
std::optional<ScheduledTask> read_system_task(const std::wstring& name);
