#pragma once

#include <string>
#include <vector>

#include <windows.h>

#include "common/owned.h"

/// Work on the entries of an open folder by handle, for trees in which somebody else may put links in the
/// place of folders meanwhile: what a path leads to can change under it, what a handle holds cannot. Names
/// are single parts, taken literally. Every function returns a Win32 error number, 0 for success.

/// An entry as its folder lists it.
struct ListedEntry {
    std::wstring name;
    DWORD attributes = 0;
    /// Number of the file on its volume, 0 where the file system has none to tell.
    ULONGLONG number = 0;

    /// Whether there is something below it that is its own: a link to a folder has nothing.
    [[nodiscard]] bool is_real_folder() const;
};

/// Opens a folder by its path, following links, as the place to begin.
DWORD open_starting_folder(const std::wstring& path, OwnedFile& folder);

/// Opens one entry of a folder for the calls below. Anything but a real folder, and a folder that is another
/// than the one listed, is ERROR_DIRECTORY.
DWORD open_subfolder(HANDLE parent, const ListedEntry& entry, OwnedFile& folder);

/// Reads the entries of a folder that was opened with open_subfolder, without its dot entries.
DWORD list_open_folder(HANDLE folder, std::vector<ListedEntry>& entries);

/// Deletes one entry as itself: a file, a read-only one too, an empty folder, or a link. One that is open
/// elsewhere goes, at the latest, when it is closed there. What cannot be deleted keeps its attributes.
DWORD delete_entry(HANDLE parent, const std::wstring& name);

/// Whether a folder still has an entry of this name; one that is about to go counts as gone.
bool has_entry(HANDLE parent, const std::wstring& name);
