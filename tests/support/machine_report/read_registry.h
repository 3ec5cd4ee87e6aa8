#pragma once

#include "machine_state.h"

/// The key and every key below it that holds a value, depth first; empty when there is none. `label` goes
/// into each.
std::vector<RegistryKey> read_keys(const std::wstring& label, const std::wstring& path, bool is_32_bit_view);

/// True when the key is there (64-bit view) and neither it nor any key below it holds a value.
bool is_empty_key(const std::wstring& path);

/// What Windows is to rename or delete at its next start, in order: both lists, one behind the other.
std::vector<PendingMove> read_pending_moves();
