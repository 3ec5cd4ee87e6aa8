#include "machine_state.h"

#include <algorithm>

#include "read_files.h"
#include "read_registry.h"
#include "read_service.h"
#include "read_shortcut.h"
#include "read_task.h"
#include "system_task.h"
#include "this_system.h"
#include "watched_places.h"

namespace {

void read_folders(MachineState& state) {
    for (const std::wstring& folder : watched_folders()) {
        std::optional<FolderTree> tree = read_tree(folder);
        if (!tree) {
            continue;
        }
        if (holds_a_file(*tree)) {
            state.trees.push_back(std::move(*tree));
            continue;
        }
        state.left_behind.push_back(folder + L"\\");
        for (const TreeEntry& entry : tree->entries) {
            state.left_behind.push_back(folder + L"\\" + entry.path + L"\\");
        }
    }
}

std::vector<RegistryKey> read_watched(const std::vector<WatchedKey>& watched, bool is_32_bit_view) {
    std::vector<RegistryKey> keys;
    for (const WatchedKey& place : watched) {
        for (RegistryKey& key : read_keys(place.label, place.path, is_32_bit_view)) {
            keys.push_back(std::move(key));
        }
    }
    return keys;
}

// Both bit views: an entry in the wrong one must be seen.
std::vector<RegistryKey> read_watched_in_both_views(const std::vector<WatchedKey>& watched) {
    std::vector<RegistryKey> keys = read_watched(watched, false);
    for (RegistryKey& key : read_watched(watched, true)) {
        keys.push_back(std::move(key));
    }
    return keys;
}

void read_manifests(MachineState& state) {
    for (const RegistryKey& key : state.hosts) {
        for (const RegistryValue& value : key.values) {
            const bool known = std::any_of(state.manifests.begin(), state.manifests.end(),
                                           [&](const TextFile& file) { return file.path == value.text; });
            std::optional<std::string> bytes = known ? std::nullopt : read_file(value.text);
            if (bytes) {
                state.manifests.push_back({value.text, std::move(*bytes)});
            }
        }
    }
}

void read_empty_keys(MachineState& state) {
    for (const auto& places : {watched_uninstall_keys(), watched_host_keys(), watched_parent_keys()}) {
        for (const WatchedKey& place : places) {
            if (is_empty_key(place.path)) {
                state.left_behind.push_back(L"HKLM\\" + place.path);
            }
        }
    }
}

} // namespace

MachineState read_machine_state() {
    MachineState state;
    read_folders(state);
    state.uninstall = read_watched_in_both_views(watched_uninstall_keys());
    state.hosts = read_watched_in_both_views(watched_host_keys());
    state.policies = read_watched(watched_policy_keys(), false);
    read_manifests(state);
    state.service = read_service(L"VeyraLinkward");
    state.task_calls = read_task_calls();
    // On Wine schtasks.exe is a recorder, and Task Scheduler hears nothing of it.
    state.task = is_wine() ? task_after(state.task_calls) : read_system_task(L"Brackenfold\\FWC Updater");
    state.shortcut = read_shortcut(watched_shortcut());
    state.pending = read_pending_moves();
    read_empty_keys(state);
    return state;
}

bool is_empty(const MachineState& state) {
    return state.trees.empty() && state.uninstall.empty() && state.hosts.empty() && state.policies.empty() &&
           !state.service && !state.task && !state.shortcut && state.pending.empty();
}
