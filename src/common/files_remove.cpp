#include <algorithm>

#include <windows.h>

#include "common/file_error.h"
#include "common/files.h"
#include "common/open_folder.h"
#include "common/paths.h"
#include "common/real_path.h"

namespace {

constexpr const char* remove_operation = "remove_all";

/// How many folders of one chain are held open at a time; in a deeper tree those above are let go.
constexpr size_t max_open_folders = 128;

/// A folder whose contents are being removed, with those of its subfolders that are still to do, last first.
struct Level {
    ListedEntry entry;
    OwnedFile folder;
    std::vector<ListedEntry> subfolders;
};

/// The removal of one tree. The levels lead from its root to where the work is; a tree of any depth needs
/// neither a stack frame nor a handle for each of them.
struct TreeRemoval {
    /// The folder that holds the root of the tree.
    OwnedFile anchor;
    std::wstring anchor_path;
    std::vector<Level> levels;
    /// The first thing that could not be removed, and why.
    DWORD error = ERROR_SUCCESS;
    std::wstring failed_path;

    [[nodiscard]] HANDLE current_folder() const {
        return levels.empty() ? anchor.get() : levels.back().folder.get();
    }
};

void note_failure(TreeRemoval& removal, DWORD error, const std::wstring& name) {
    if (removal.error != ERROR_SUCCESS || error == ERROR_SUCCESS || is_not_found(error)) {
        return;
    }
    removal.error = error;
    removal.failed_path = removal.anchor_path;
    for (const Level& level : removal.levels) {
        removal.failed_path = join_path(removal.failed_path, level.entry.name);
    }
    removal.failed_path = join_path(removal.failed_path, name);
}

void remove_entry(TreeRemoval& removal, const std::wstring& name) {
    note_failure(removal, delete_entry(removal.current_folder(), name), name);
}

/// Lets go of the folder that has become one too many, now that the level with this index is open.
void keep_few_open(TreeRemoval& removal, size_t index) {
    if (index >= max_open_folders) {
        removal.levels[index - max_open_folders].folder.reset();
    }
}

/// Removes everything in a folder but its subfolders, into which the work goes next.
void go_down(TreeRemoval& removal, const ListedEntry& entry, OwnedFile folder) {
    std::vector<ListedEntry> entries;
    note_failure(removal, list_open_folder(folder.get(), entries), entry.name);
    removal.levels.push_back({entry, std::move(folder), {}});
    keep_few_open(removal, removal.levels.size() - 1);
    std::vector<ListedEntry>& subfolders = removal.levels.back().subfolders;
    for (ListedEntry& below : entries) {
        if (below.is_real_folder()) {
            subfolders.push_back(std::move(below));
        } else {
            remove_entry(removal, below.name);
        }
    }
    std::ranges::reverse(subfolders);
}

void begin_entry(TreeRemoval& removal, const ListedEntry& entry) {
    OwnedFile folder;
    const DWORD open_error =
        entry.is_real_folder() ? open_subfolder(removal.current_folder(), entry, folder) : ERROR_DIRECTORY;
    if (folder) {
        go_down(removal, entry, std::move(folder));
        return;
    }
    // Not a folder, or one that may not be read, which can go all the same when it is empty.
    const DWORD error = delete_entry(removal.current_folder(), entry.name);
    note_failure(removal, error == ERROR_SUCCESS || open_error == ERROR_DIRECTORY ? error : open_error,
                 entry.name);
}

/// Opens the folders down to the last level again, from the anchor and each from the one above it. A folder
/// that is no longer there, or no longer the same, is out of reach with everything below it.
bool reopen_levels(TreeRemoval& removal) {
    HANDLE parent = removal.anchor.get();
    for (size_t i = 0; i < removal.levels.size(); ++i) {
        Level& level = removal.levels[i];
        if (const DWORD error = open_subfolder(parent, level.entry, level.folder); error != ERROR_SUCCESS) {
            const std::wstring name = level.entry.name;
            removal.levels.resize(i);
            note_failure(removal, error == ERROR_DIRECTORY ? ERROR_DIR_NOT_EMPTY : error, name);
            return false;
        }
        parent = level.folder.get();
        keep_few_open(removal, i);
    }
    return true;
}

/// Goes back up and removes the folder, which is empty now unless something in it could not be removed.
void go_up(TreeRemoval& removal) {
    const std::wstring name = std::move(removal.levels.back().entry.name);
    removal.levels.pop_back();
    if (!removal.levels.empty() && !removal.levels.back().folder && !reopen_levels(removal)) {
        return;
    }
    remove_entry(removal, name);
}

void remove_with_contents(TreeRemoval& removal, const ListedEntry& root) {
    begin_entry(removal, root);
    while (!removal.levels.empty()) {
        std::vector<ListedEntry>& subfolders = removal.levels.back().subfolders;
        if (subfolders.empty()) {
            go_up(removal);
        } else {
            const ListedEntry next = std::move(subfolders.back());
            subfolders.pop_back();
            begin_entry(removal, next);
        }
    }
}

} // namespace

void remove_tree(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        const DWORD error = GetLastError();
        if (is_not_found(error)) {
            return;
        }
        throw FileError(remove_operation, error, path);
    }
    const std::wstring full = full_path(path);
    const ListedEntry root = {file_name_of(full), attributes};
    if (root.name.empty()) {
        throw FileError(remove_operation, ERROR_INVALID_PARAMETER, path);
    }
    TreeRemoval removal;
    removal.anchor_path = parent_of(full);
    if (const DWORD error = open_starting_folder(removal.anchor_path, removal.anchor);
        error != ERROR_SUCCESS) {
        throw FileError(remove_operation, error, path);
    }
    remove_with_contents(removal, root);
    // Whatever went wrong on the way, what counts is whether it has gone.
    if (removal.error != ERROR_SUCCESS && has_entry(removal.anchor.get(), root.name)) {
        throw FileError(remove_operation, removal.error, removal.failed_path);
    }
}

void remove_tree_if_possible(const std::wstring& path) {
    try {
        remove_tree(path);
    } catch (const FileError&) {
        // As promised.
    }
}
