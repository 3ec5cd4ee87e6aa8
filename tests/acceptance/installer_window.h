#pragma once

#include "facts.h"
#include "run_program.h"

/// Waits until the program shows the installer's window, asks the window to close, as its close button does,
/// and says what it saw. Whether the window has content does not matter: that depends on the machine.
Facts see_and_close_window(const RunningProgram& program);

/// What is to be seen.
Facts expected_window();
