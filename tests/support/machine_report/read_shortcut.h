#pragma once

#include "machine_state.h"

/// A shortcut file as the shell reads it; nothing when the file is missing or no shortcut. Needs COM on the
/// thread.
std::optional<Shortcut> read_shortcut(const std::wstring& path);
