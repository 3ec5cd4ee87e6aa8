#include <windows.h>

#include "common/file_error.h"
#include "common/file_identity.h"
#include "common/files.h"
#include "common/paths.h"

namespace {

bool has_attribute(DWORD attributes, DWORD wanted) {
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & wanted) != 0;
}

DWORD copy_error(const std::wstring& from, const std::wstring& to, BOOL keep_existing) {
    return CopyFileW(from.c_str(), to.c_str(), keep_existing) != FALSE ? ERROR_SUCCESS : GetLastError();
}

/// Copies over an existing target. CopyFileW does not replace one that is read-only or hidden.
DWORD replace_file(const std::wstring& from, const std::wstring& to) {
    if (is_same_existing_entry(from, to)) {
        return ERROR_FILE_EXISTS;
    }
    const DWORD error = copy_error(from, to, FALSE);
    if (error != ERROR_ACCESS_DENIED) {
        return error;
    }
    const DWORD attributes = GetFileAttributesW(to.c_str());
    if (has_attribute(attributes, FILE_ATTRIBUTE_DIRECTORY) ||
        !has_attribute(attributes, FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM) ||
        SetFileAttributesW(to.c_str(), FILE_ATTRIBUTE_NORMAL) == FALSE) {
        return error;
    }
    const DWORD second_error = copy_error(from, to, FALSE);
    if (second_error != ERROR_SUCCESS) {
        // What is not replaced stays as it was.
        SetFileAttributesW(to.c_str(), attributes);
    }
    return second_error;
}

/// `above` is the chain of source folders that lead to `from`.
void copy_folder_contents(const std::wstring& from, const std::wstring& to,
                          std::vector<std::wstring>& above) {
    above.push_back(from);
    create_folders(to);
    for (const FolderEntry& entry : list_folder(from)) {
        const std::wstring entry_target = join_path(to, entry.name);
        if (!entry.is_directory) {
            copy_file_over(entry.path, entry_target);
            continue;
        }
        // Only a link can lead back up or to a place around what is being written, on either side.
        const bool meets_link = entry.is_link || has_attribute(GetFileAttributesW(entry_target.c_str()),
                                                               FILE_ATTRIBUTE_REPARSE_POINT);
        if (meets_link) {
            bool leads_back = lies_inside(entry_target, entry.path);
            for (const std::wstring& folder : above) {
                leads_back = leads_back || is_same_existing_entry(entry.path, folder);
            }
            if (leads_back) {
                throw FileError("copy", ERROR_CANT_RESOLVE_FILENAME, entry.path, entry_target);
            }
        }
        copy_folder_contents(entry.path, entry_target, above);
    }
    above.pop_back();
}

} // namespace

void copy_file_over(const std::wstring& from, const std::wstring& to) {
    // A file that is not there yet, the usual case, costs nothing but the copy itself.
    DWORD error = copy_error(from, to, TRUE);
    if (error == ERROR_FILE_EXISTS || error == ERROR_ALREADY_EXISTS) {
        error = replace_file(from, to);
    }
    if (error != ERROR_SUCCESS) {
        throw FileError("copy_file", error, from, to);
    }
}

void copy_folder_over(const std::wstring& from, const std::wstring& to) {
    if (lies_inside(to, from)) {
        throw FileError("copy", ERROR_INVALID_PARAMETER, from, to);
    }
    std::vector<std::wstring> above;
    copy_folder_contents(from, to, above);
}
