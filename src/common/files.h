#pragma once

#include <string>
#include <vector>

/// File-system work. Each function throws FileError (see file_error.h), which names the operation, the
/// system's reason on one line and the paths. Paths are taken as they stand, with backslashes or slashes.

/// One entry of a folder. A directory link or junction is a directory and a link at once.
struct FolderEntry {
    std::wstring name;
    /// The folder, as it was named, joined with the name.
    std::wstring path;
    bool is_directory = false;
    bool is_link = false;
};

/// The entries of a folder, not recursive, in the order in which the file system returns them.
/// Throws with operation "directory_iterator" when the folder cannot be opened or read to its end.
std::vector<FolderEntry> list_folder(const std::wstring& folder);

/// True for an entry of any type, and for a link that leads to one. False for errors that mean "not found"
/// (the name that Windows cannot even parse among them); throws with operation "exists" for any other error.
bool entry_exists(const std::wstring& path);

/// Makes a folder with all missing parents. An existing folder, or a link to one, is fine.
/// Throws with operation "create_directories".
void create_folders(const std::wstring& folder);

/// Copies one file, replacing an existing target, a read-only or hidden one too; a target that cannot be
/// replaced keeps its attributes. Time and attributes go along. Throws with operation "copy_file"; a file is
/// never copied onto itself.
void copy_file_over(const std::wstring& from, const std::wstring& to);

/// Copies everything below `from` into `to`, which is made when missing, replacing existing files; stops at
/// the first failure. Links in the source are followed. Throws with operation "copy" when the target lies
/// inside the source or inside what a link leads to, or a link leads back up; then the folder that would
/// have been made is not. Otherwise throws as the functions that it uses.
void copy_folder_over(const std::wstring& from, const std::wstring& to);

/// Removes a file, or a folder with everything below it; a missing path is fine, and so is one that goes as
/// soon as somebody else lets go of it. A link or junction is taken away as a link, never entered, also when
/// it takes the place of a folder meanwhile. Read-only files go, too. What cannot be removed stays, the rest
/// still goes; then throws with operation "remove_all" and the path that failed first. The root of a drive
/// is refused.
void remove_tree(const std::wstring& path);

/// The same where a failure has nobody to be told to: what cannot be removed stays. Throws nothing of its
/// own.
void remove_tree_if_possible(const std::wstring& path);

/// A file name's extension, from its last dot, in the system's ANSI code page with ASCII letters lowered.
/// A name whose only dot is its first character has none.
std::string lower_extension(const std::wstring& path);
