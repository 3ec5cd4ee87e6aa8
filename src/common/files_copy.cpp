#include "common/files.h"

#include <windows.h>

#include "common/files_errors.h"

namespace fs = std::filesystem;

namespace {

/// Whether two paths lead to the same entry, for paths of which either may be missing.
bool is_same_existing_entry(const fs::path& a, const fs::path& b) {
    try {
        return is_same_entry(a, b);
    } catch (const fs::filesystem_error&) {
        // One of them is missing or closed to us; the work that follows says so in its own words.
        return false;
    }
}

/// CopyFileW does not replace a target that is read-only or hidden.
bool make_replaceable(const fs::path& target) {
    const DWORD attributes = GetFileAttributesW(target.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0 &&
           (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM)) != 0 &&
           SetFileAttributesW(target.c_str(), FILE_ATTRIBUTE_NORMAL) != FALSE;
}

/// `target` is the root of the whole copy and `above` the chain of source folders that lead to `from`.
void copy_folder_contents(const fs::path& from, const fs::path& to, const fs::path& target,
                          std::vector<fs::path>& above) {
    above.push_back(from);
    create_folders(to);
    for (const FolderEntry& entry : list_folder(from)) {
        const fs::path entry_target = to / entry.path.filename();
        if (!entry.is_directory) {
            copy_file_over(entry.path, entry_target);
            continue;
        }
        if (entry.is_link) {
            // Only a link can lead back up or into what is being written.
            bool leads_back = is_same_existing_entry(entry.path, target);
            for (const fs::path& folder : above) {
                leads_back = leads_back || is_same_existing_entry(entry.path, folder);
            }
            if (leads_back) {
                throw_file_error("copy", ERROR_CANT_RESOLVE_FILENAME, entry.path, entry_target);
            }
        }
        copy_folder_contents(entry.path, entry_target, target, above);
    }
    above.pop_back();
}

/// Whether `path`, or any folder above it, is `folder`.
bool lies_inside(const fs::path& path, const fs::path& folder) {
    for (fs::path place = path; !place.empty(); place = place.parent_path()) {
        if (is_same_existing_entry(place, folder)) {
            return true;
        }
        if (place == place.parent_path()) {
            break;
        }
    }
    return false;
}

} // namespace

void copy_file_over(const fs::path& from, const fs::path& to) {
    const char* const operation = "copy_file";
    if (is_same_existing_entry(from, to)) {
        throw_file_error(operation, ERROR_FILE_EXISTS, from, to);
    }
    if (CopyFileW(from.c_str(), to.c_str(), FALSE) != FALSE) {
        return;
    }
    DWORD error = GetLastError();
    if (error == ERROR_ACCESS_DENIED && make_replaceable(to)) {
        if (CopyFileW(from.c_str(), to.c_str(), FALSE) != FALSE) {
            return;
        }
        error = GetLastError();
    }
    throw_file_error(operation, error, from, to);
}

void copy_folder_over(const fs::path& from, const fs::path& to) {
    if (lies_inside(to, from)) {
        throw_file_error("copy", ERROR_INVALID_PARAMETER, from, to);
    }
    std::vector<fs::path> above;
    copy_folder_contents(from, to, to, above);
}
