#pragma once

#include <functional>
#include <string>

/// How a component tells what it does: one line of UTF-8 text per step, with true for a step that succeeded
/// or a neutral note and false for a failed step. Called on the component's own thread, never stored.
using ProgressFn = std::function<void(const std::string& message, bool ok)>;
