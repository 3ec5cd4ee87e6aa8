#pragma once

#include <string>

/// Runs a command of cmd.exe without a console window and waits for it, at most `timeout_ms`. The command
/// line begins with "/C" and goes to cmd.exe as it stands. Returns whether cmd.exe could be started; the exit
/// code is ignored, and a command that outlives the wait is left running.
bool run_hidden_command(const std::wstring& command_line, unsigned long timeout_ms);
