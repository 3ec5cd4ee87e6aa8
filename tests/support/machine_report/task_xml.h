#pragma once

#include <string>
#include <string_view>

#include "machine_state.h"

/// A task in the words in which schtasks.exe is told to make it, from the XML in which Task Scheduler keeps
/// it. Understands what these words can say: one weekly trigger, one program, an account. What is something
/// else stands in the field as it was found. `recorded` stays empty.
ScheduledTask task_from_xml(const std::wstring& name, std::wstring_view xml);
