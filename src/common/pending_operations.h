#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What Windows has noted to move or delete at its next start (MoveFileEx with MOVEFILE_DELAY_UNTIL_REBOOT).

/// Hands every file below a folder to the system for deletion at the next start; links are not followed, and
/// nothing happens when the folder itself is one. Read-only files lose that attribute, which would keep them.
/// Folders are not scheduled; folders that cannot be read and refused files are passed over.
void schedule_removal_at_reboot(const std::wstring& folder);

/// Takes the deletions of everything below a folder off the system's list, so that what is installed there
/// now survives the next start. Moves, the folder itself and everybody else's entries stay, byte for byte and
/// in their order; without an entry of ours nothing is written, and a list that is damaged is left alone.
/// Failures are swallowed. May wait 2 s for other programs; not for the window's thread.
///
/// While the list is read and written the lock is held that MoveFileEx takes for the same, so nothing of
/// another program's MoveFileEx is lost. A program that writes the list by itself does not know that lock: it
/// is noticed unless it writes in the instant between our last look at the list and our writing, and then its
/// change is lost; if it writes back what it read before ours, our entries are on the list again and are
/// taken off anew.
void cancel_pending_deletions_below(const std::wstring& folder);

/// The list as it is stored (texts with their terminators, in pairs, and one more terminator at the end)
/// without the deletions of what lies below any of the folders, which are names as in "\??\C:\Folder". Empty
/// when nothing else is on it; nothing when there is no such deletion, or the list is not of that form.
std::optional<std::wstring> without_deletions_below(std::wstring_view list,
                                                    const std::vector<std::wstring>& folders);
