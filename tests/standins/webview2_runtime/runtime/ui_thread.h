#pragma once

#include <functional>

#include <windows.h>

/// Makes the calling thread the one on which everything happens: the thread that creates environments.
/// Its message loop runs what run_on_ui_thread hands over, through a hidden window of our own.
void adopt_ui_thread();

/// Runs `event` from the message loop of the UI thread, one event per turn of the loop and in order. Not
/// while another event of ours is running: the control does not re-enter. Any thread.
void run_on_ui_thread(std::function<void()> event);

/// True on the thread that created the environment. Anything else is a fault of the program, recorded
/// under the method's name; the method then answers RPC_E_WRONG_THREAD.
bool is_on_ui_thread(const wchar_t* method);

/// The module that this code is in.
HINSTANCE runtime_module();
