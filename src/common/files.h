#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// File-system work with the standard library's contract: each function throws
/// std::filesystem::filesystem_error that names the operation, the system's reason on one line and the paths.
/// The libraries of the compilers that we build with do not all keep that contract; these functions do.

/// One entry of a folder. A directory link or junction is a directory and a link at once.
struct FolderEntry {
    std::filesystem::path path;
    bool is_directory = false;
    bool is_link = false;
};

/// The entries of a folder, not recursive, in the order in which the file system returns them.
/// Throws with operation "directory_iterator" when the folder cannot be opened or read to its end.
std::vector<FolderEntry> list_folder(const std::filesystem::path& folder);

/// True for an entry of any type, and for a link that leads to one. False for errors that mean "not found"
/// (the name that Windows cannot even parse among them); throws with operation "exists" for any other error.
bool entry_exists(const std::filesystem::path& path);

/// Whether both paths lead to the same file or folder, however they are spelled.
/// Throws with operation "equivalent" when either is missing or cannot be opened.
bool is_same_entry(const std::filesystem::path& a, const std::filesystem::path& b);

/// Makes a folder with all missing parents. An existing folder, or a link to one, is fine.
/// Throws with operation "create_directories".
void create_folders(const std::filesystem::path& folder);

/// Copies one file, replacing an existing target, a read-only or hidden one too. Time and attributes go
/// along. Throws with operation "copy_file"; a file is never copied onto itself.
void copy_file_over(const std::filesystem::path& from, const std::filesystem::path& to);

/// Copies everything below `from` into `to`, which is made when missing, replacing existing files; stops at
/// the first failure. Links in the source are followed. Throws with operation "copy" when the target lies
/// inside the source or a link leads back up, otherwise as the functions that it uses.
void copy_folder_over(const std::filesystem::path& from, const std::filesystem::path& to);

/// Removes a file, or a folder with everything below it; a missing path is fine. A link or junction is taken
/// away as a link, never entered. Read-only files go, too. What cannot be removed stays, the rest still goes;
/// then throws with operation "remove_all" and the path that failed first.
void remove_tree(const std::filesystem::path& path);

/// Hands every file below a folder (links are not followed) to the system for deletion at the next start.
/// Folders are not scheduled; folders that cannot be read and refused files are passed over.
void schedule_removal_at_reboot(const std::filesystem::path& folder);

/// A file name's extension, from its last dot, in the system's ANSI code page with ASCII letters lowered.
/// A name whose only dot is its first character has none.
std::string lower_extension(const std::filesystem::path& path);
