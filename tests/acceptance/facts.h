// What there is on a machine, as texts that can be compared one by one.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "machine_state.h"

/// Of which area ("files", "registry"), and what: a path, a value's name.
using FactName = std::pair<std::wstring, std::wstring>;
using Facts = std::map<FactName, std::wstring>;

/// A second value under the same name is put behind the first: it must not go unseen.
void add_fact(Facts& facts, const std::wstring& area, const std::wstring& what, const std::wstring& value);

void add_folder_fact(Facts& facts, const std::wstring& path);
/// By size and SHA-256. `bytes` are nothing for a file that cannot be read.
void add_file_fact(Facts& facts, const std::wstring& path, const std::optional<std::string>& bytes);
/// A file with the bytes of another. One that cannot be read is like no file that is found.
void add_copy_fact(Facts& facts, const std::wstring& path, const std::wstring& original);
/// One fact for each value, with its type and data.
void add_key_facts(Facts& facts, const std::wstring& area, const RegistryKey& key);
void add_service_facts(Facts& facts, const Service& service);
/// The recorded command only where there is one.
void add_task_facts(Facts& facts, const ScheduledTask& task);
void add_shortcut_facts(Facts& facts, const Shortcut& shortcut);
void add_pending_fact(Facts& facts, const PendingMove& move);
