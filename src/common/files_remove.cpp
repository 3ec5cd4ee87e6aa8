#include "common/files.h"

#include <windows.h>

#include "common/files_errors.h"
#include "common/owned.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* remove_operation = "remove_all";

/// The first thing that could not be removed, and why.
struct RemovalFailure {
    DWORD error = ERROR_SUCCESS;
    fs::path path;

    void note(DWORD new_error, const fs::path& new_path) {
        if (error == ERROR_SUCCESS && new_error != ERROR_SUCCESS && !is_not_found(new_error)) {
            error = new_error;
            path = new_path;
        }
    }
};

DWORD last_error_unless(BOOL succeeded) {
    return succeeded != FALSE ? ERROR_SUCCESS : GetLastError();
}

/// Deletes one file, link or empty folder.
DWORD delete_entry(const fs::path& path, bool is_directory) {
    const auto attempt = [&] {
        return last_error_unless(is_directory ? RemoveDirectoryW(path.c_str()) : DeleteFileW(path.c_str()));
    };
    const DWORD error = attempt();
    if (error != ERROR_ACCESS_DENIED) {
        return error;
    }
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_READONLY) == 0 ||
        SetFileAttributesW(path.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY)) ==
            FALSE) {
        return error;
    }
    const DWORD second_error = attempt();
    if (second_error != ERROR_SUCCESS) {
        // What stays, stays as it was.
        SetFileAttributesW(path.c_str(), attributes);
    }
    return second_error;
}

/// Opens a folder so that nobody can rename it, or put a link in its place, while its contents are removed.
OwnedFile pin_folder(const fs::path& folder) {
    return OwnedFile(CreateFileW(folder.c_str(), FILE_LIST_DIRECTORY | FILE_READ_ATTRIBUTES,
                                 FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                 FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
}

void remove_entry(const fs::path& path, bool is_directory, bool is_link, RemovalFailure& failure);

void remove_folder_contents(const fs::path& folder, RemovalFailure& failure) {
    const OwnedFile pin = pin_folder(folder);
    BY_HANDLE_FILE_INFORMATION information = {};
    if (!pin || GetFileInformationByHandle(pin.get(), &information) == FALSE) {
        failure.note(GetLastError(), folder);
        return;
    }
    if ((information.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
        // It became a link after it was listed: leave what it points to alone.
        return;
    }
    try {
        for (const FolderEntry& entry : list_folder(folder)) {
            remove_entry(entry.path, entry.is_directory, entry.is_link, failure);
        }
    } catch (const fs::filesystem_error& error) {
        failure.note(static_cast<DWORD>(error.code().value()), folder);
    }
}

void remove_entry(const fs::path& path, bool is_directory, bool is_link, RemovalFailure& failure) {
    if (is_directory && !is_link) {
        remove_folder_contents(path, failure);
    }
    failure.note(delete_entry(path, is_directory), path);
}

} // namespace

void remove_tree(const fs::path& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        const DWORD error = GetLastError();
        if (is_not_found(error)) {
            return;
        }
        throw_file_error(remove_operation, error, path);
    }
    RemovalFailure failure;
    remove_entry(path, (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0,
                 (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0, failure);
    if (failure.error != ERROR_SUCCESS) {
        throw_file_error(remove_operation, failure.error, failure.path);
    }
}

void schedule_removal_at_reboot(const fs::path& folder) {
    std::vector<FolderEntry> entries;
    try {
        entries = list_folder(folder);
    } catch (const fs::filesystem_error&) {
        // A folder that cannot be read has nothing to schedule.
        return;
    }
    for (const FolderEntry& entry : entries) {
        if (!entry.is_directory) {
            // Refusals are ignored: there is no further way to get rid of the file.
            MoveFileExW(entry.path.c_str(), nullptr, MOVEFILE_DELAY_UNTIL_REBOOT);
        } else if (!entry.is_link) {
            schedule_removal_at_reboot(entry.path);
        }
    }
}
