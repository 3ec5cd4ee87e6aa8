// Starts programs and ends those that do not end by themselves.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include <windows.h>

/// What became of a program.
struct ProgramEnd {
    bool has_started = false;
    std::optional<DWORD> exit_code; ///< nothing when it was ended because its time was over
};

/// What is done with a program that runs. `is_running` waits a moment and then says whether it still does;
/// false as well when its time is over.
struct RunningProgram {
    DWORD id = 0;
    std::function<bool()> is_running;
};

/// Runs a command line, as CreateProcess takes it, to its end, or until `limit_s` seconds have passed: then
/// it is ended with every program that it has started. `meanwhile`, when given, is called once it runs.
ProgramEnd run_program(const std::wstring& command_line, DWORD limit_s,
                       const std::function<void(const RunningProgram&)>& meanwhile = {});

/// The same in words: L"0", or why there is no exit code.
std::wstring end_text(const ProgramEnd& end, DWORD limit_s);
