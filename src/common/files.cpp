#include "common/files.h"

#include <cwchar>

#include <windows.h>

#include "common/file_error.h"
#include "common/owned.h"
#include "common/paths.h"
#include "common/real_path.h"
#include "common/text.h"

namespace {

struct FindHandleKind {
    using Raw = HANDLE;
    static Raw none() { return INVALID_HANDLE_VALUE; }
    static void close(Raw handle) { FindClose(handle); }
};

bool is_dot_entry(const wchar_t* name) {
    return std::wcscmp(name, L".") == 0 || std::wcscmp(name, L"..") == 0;
}

/// What the system says to a path; a link counts by what it leads to.
DWORD error_of_lookup(const std::wstring& path) {
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

bool is_folder(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

} // namespace

std::vector<FolderEntry> list_folder(const std::wstring& folder) {
    const char* const operation = "directory_iterator";
    std::vector<FolderEntry> entries;
    WIN32_FIND_DATAW data = {};
    const Owned<FindHandleKind> search(FindFirstFileW(join_path(folder, L"*").c_str(), &data));
    if (!search) {
        const DWORD error = GetLastError();
        // An empty folder has not even a dot entry at the root of a drive.
        if (error == ERROR_FILE_NOT_FOUND && is_folder(folder)) {
            return entries;
        }
        throw FileError(operation, error, folder);
    }
    do {
        if (!is_dot_entry(data.cFileName)) {
            entries.push_back({data.cFileName, join_path(folder, data.cFileName),
                               (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0,
                               (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0});
        }
    } while (FindNextFileW(search.get(), &data) != FALSE);
    if (const DWORD error = GetLastError(); error != ERROR_NO_MORE_FILES) {
        throw FileError(operation, error, folder);
    }
    return entries;
}

bool entry_exists(const std::wstring& path) {
    const DWORD error = error_of_lookup(path);
    if (error != ERROR_SUCCESS && !is_not_found(error)) {
        throw FileError("exists", error, path);
    }
    return error == ERROR_SUCCESS;
}

void create_folders(const std::wstring& folder) {
    if (is_folder(folder)) {
        return;
    }
    // A trailing separator makes an empty last part, whose folder is its parent.
    const std::wstring parent = parent_of(folder);
    if (!parent.empty() && parent != folder) {
        create_folders(parent);
    }
    if (CreateDirectoryW(folder.c_str(), nullptr) == FALSE) {
        const DWORD error = GetLastError();
        // Someone else may have made it in the meantime; a file of that name is an error.
        if (error != ERROR_ALREADY_EXISTS || !is_folder(folder)) {
            throw FileError("create_directories", error, folder);
        }
    }
}

std::string lower_extension(const std::wstring& path) {
    return ascii_to_lower(to_ansi(extension_of(path)));
}
