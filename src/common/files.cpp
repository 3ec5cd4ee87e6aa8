#include "common/files.h"

#include <cwchar>
#include <windows.h>

#include "common/files_errors.h"
#include "common/owned.h"
#include "common/text.h"

namespace fs = std::filesystem;

namespace {

struct FindHandleKind {
    using Raw = HANDLE;
    static Raw none() { return INVALID_HANDLE_VALUE; }
    static void close(Raw handle) { FindClose(handle); }
};

bool is_dot_entry(const wchar_t* name) {
    return std::wcscmp(name, L".") == 0 || std::wcscmp(name, L"..") == 0;
}

/// Opens what a path leads to, a folder too, for its attributes; links are followed.
OwnedFile open_entry(const fs::path& path) {
    return OwnedFile(CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES,
                                 FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                 OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

BY_HANDLE_FILE_INFORMATION entry_identity(const fs::path& path, const fs::path& a, const fs::path& b) {
    const OwnedFile file = open_entry(path);
    BY_HANDLE_FILE_INFORMATION identity = {};
    if (!file || GetFileInformationByHandle(file.get(), &identity) == FALSE) {
        throw_file_error("equivalent", GetLastError(), a, b);
    }
    return identity;
}

/// What the system says to a path; a link counts by what it leads to.
DWORD error_of_lookup(const fs::path& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return GetLastError();
    }
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0 || open_entry(path)) {
        return ERROR_SUCCESS;
    }
    const DWORD error = GetLastError();
    // Not every reparse point is a link that can be followed; it is an entry all the same.
    return error == ERROR_CANT_ACCESS_FILE ? ERROR_SUCCESS : error;
}

bool is_folder(const fs::path& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

} // namespace

std::vector<FolderEntry> list_folder(const fs::path& folder) {
    const char* const operation = "directory_iterator";
    std::vector<FolderEntry> entries;
    WIN32_FIND_DATAW data = {};
    const Owned<FindHandleKind> search(FindFirstFileW((folder / L"*").c_str(), &data));
    if (!search) {
        const DWORD error = GetLastError();
        // An empty folder has not even a dot entry at the root of a drive.
        if (error == ERROR_FILE_NOT_FOUND && is_folder(folder)) {
            return entries;
        }
        throw_file_error(operation, error, folder);
    }
    do {
        if (!is_dot_entry(data.cFileName)) {
            entries.push_back({folder / data.cFileName,
                               (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0,
                               (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0});
        }
    } while (FindNextFileW(search.get(), &data) != FALSE);
    if (const DWORD error = GetLastError(); error != ERROR_NO_MORE_FILES) {
        throw_file_error(operation, error, folder);
    }
    return entries;
}

bool entry_exists(const fs::path& path) {
    const DWORD error = error_of_lookup(path);
    if (error != ERROR_SUCCESS && !is_not_found(error)) {
        throw_file_error("exists", error, path);
    }
    return error == ERROR_SUCCESS;
}

bool is_same_entry(const fs::path& a, const fs::path& b) {
    const BY_HANDLE_FILE_INFORMATION first = entry_identity(a, a, b);
    const BY_HANDLE_FILE_INFORMATION second = entry_identity(b, a, b);
    return first.dwVolumeSerialNumber == second.dwVolumeSerialNumber &&
           first.nFileIndexHigh == second.nFileIndexHigh && first.nFileIndexLow == second.nFileIndexLow;
}

void create_folders(const fs::path& folder) {
    if (is_folder(folder)) {
        return;
    }
    // A trailing separator makes an empty last part, whose folder is its parent.
    const fs::path parent = folder.parent_path();
    if (!parent.empty() && parent != folder) {
        create_folders(parent);
    }
    if (CreateDirectoryW(folder.c_str(), nullptr) == FALSE) {
        const DWORD error = GetLastError();
        // Someone else may have made it in the meantime; a file of that name is an error.
        if (error != ERROR_ALREADY_EXISTS || !is_folder(folder)) {
            throw_file_error("create_directories", error, folder);
        }
    }
}

std::string lower_extension(const fs::path& path) {
    return ascii_to_lower(to_ansi(path.extension().wstring()));
}
