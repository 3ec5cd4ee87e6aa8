#include "ground.h"

#include <algorithm>

#include "places.h"
#include "read_files.h"
#include "watched_places.h"

namespace {

constexpr wchar_t untouched[] = L"as it was";

bool is_same(const PendingMove& a, const PendingMove& b) {
    return a.from == b.from && a.to == b.to;
}

void add_tree_facts(Facts& facts, const FolderTree& tree) {
    add_folder_fact(facts, tree.root);
    for (const TreeEntry& entry : tree.entries) {
        const std::wstring path = tree.root + L"\\" + entry.path;
        if (entry.is_link) {
            add_fact(facts, L"files", path, L"link");
        } else if (entry.is_folder) {
            add_folder_fact(facts, path);
        } else {
            add_file_fact(facts, path, read_file(path));
        }
    }
}

bool is_of_products(const FolderTree& tree) {
    return tree.root == program_root() || tree.root == data_root_folder();
}

Facts facts_of_others(const MachineState& state) {
    Facts facts;
    for (const FolderTree& tree : state.trees) {
        if (!is_of_products(tree)) {
            add_tree_facts(facts, tree);
        }
    }
    for (const RegistryKey& key : state.policies) {
        add_key_facts(facts, L"browser policies", key);
    }
    return facts;
}

// The shell may write a path with a variable in it.
std::wstring expanded(const std::wstring& text) {
    std::wstring result(32767, L'\0');
    const DWORD length =
        ExpandEnvironmentStringsW(text.c_str(), result.data(), static_cast<DWORD>(result.size()));
    result.resize(length == 0 || length > result.size() ? 0 : length - 1);
    return result;
}

void add_shortcut(Facts& facts, Shortcut shortcut) {
    for (std::wstring* const path : {&shortcut.target, &shortcut.icon, &shortcut.working_folder}) {
        *path = expanded(*path);
    }
    add_shortcut_facts(facts, shortcut);
}

void add_pending(Facts& facts, const MachineState& state, const Ground& ground) {
    for (const PendingMove& move : state.pending) {
        if (is_below_products(move.from)) {
            add_pending_fact(facts, move);
        }
    }
    for (const PendingMove& before : ground.pending) {
        if (!is_below_products(before.from) &&
            std::none_of(state.pending.begin(), state.pending.end(),
                         [&](const PendingMove& move) { return is_same(move, before); })) {
            facts[{L"at the next start", L"entries of others"}] = L"lost: " + before.from;
            return;
        }
    }
    add_fact(facts, L"at the next start", L"entries of others", untouched);
}

} // namespace

Ground ground_of(const MachineState& state) {
    Ground ground = {facts_of_others(state), state.pending, state.left_behind};
    for (const std::wstring& folder : {program_root(), data_root_folder()}) {
        ground.may_stay.push_back(folder + L"\\");
    }
    for (const WatchedKey& key : watched_parent_keys()) {
        ground.may_stay.push_back(L"HKLM\\" + key.path);
    }
    return ground;
}

std::vector<std::wstring> traces_of_products(const MachineState& state) {
    std::vector<std::wstring> traces;
    for (const FolderTree& tree : state.trees) {
        if (is_of_products(tree)) {
            traces.push_back(L"files below " + tree.root);
        }
    }
    for (const auto* const keys : {&state.uninstall, &state.hosts}) {
        for (const RegistryKey& key : *keys) {
            traces.push_back(L"HKLM\\" + key.path);
        }
    }
    if (state.service) {
        traces.push_back(L"the service " + state.service->name);
    }
    if (state.task) {
        traces.push_back(L"the task " + state.task->name + L" (" + state.task->runs + L")");
    }
    if (state.shortcut) {
        traces.push_back(state.shortcut->path);
    }
    return traces;
}

Facts found_facts(const MachineState& state, const Ground& ground) {
    Facts facts = facts_of_others(state);
    for (const FolderTree& tree : state.trees) {
        if (is_of_products(tree)) {
            add_tree_facts(facts, tree);
        }
    }
    for (const RegistryKey& key : state.uninstall) {
        add_key_facts(facts, L"uninstall entries", key);
    }
    for (const RegistryKey& key : state.hosts) {
        add_key_facts(facts, L"native messaging", key);
    }
    if (state.service) {
        add_service_facts(facts, *state.service);
    }
    if (state.task) {
        add_task_facts(facts, *state.task);
    }
    if (state.shortcut) {
        add_shortcut(facts, *state.shortcut);
    }
    add_pending(facts, state, ground);
    for (const std::wstring& place : state.left_behind) {
        if (std::find(ground.may_stay.begin(), ground.may_stay.end(), place) == ground.may_stay.end()) {
            add_fact(facts, L"empty places", place, L"left behind");
        }
    }
    return facts;
}

void add_untouched_facts(Facts& facts, const Ground& ground) {
    for (const auto& [name, value] : ground.others) {
        add_fact(facts, name.first, name.second, value);
    }
    add_fact(facts, L"at the next start", L"entries of others", untouched);
}
