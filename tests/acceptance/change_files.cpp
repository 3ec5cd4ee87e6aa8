#include "change_files.h"

#include <algorithm>

#include <windows.h>

#include "read_files.h"

bool copy_tree(const std::wstring& from, const std::wstring& to) {
    const std::optional<FolderTree> tree = read_tree(from);
    bool is_done = tree && CreateDirectoryW(to.c_str(), nullptr) != FALSE;
    if (!is_done) {
        return false;
    }
    for (const TreeEntry& entry : tree->entries) {
        const std::wstring target = to + L"\\" + entry.path;
        const BOOL done = entry.is_folder
                              ? CreateDirectoryW(target.c_str(), nullptr)
                              : CopyFileW((from + L"\\" + entry.path).c_str(), target.c_str(), TRUE);
        is_done = done != FALSE && is_done;
    }
    return is_done;
}

void delete_tree(const std::wstring& folder) {
    std::optional<FolderTree> tree = read_tree(folder);
    if (!tree) {
        return;
    }
    // What lies in a folder comes behind it.
    std::reverse(tree->entries.begin(), tree->entries.end());
    for (const TreeEntry& entry : tree->entries) {
        const std::wstring path = folder + L"\\" + entry.path;
        SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
        if (entry.is_folder) {
            RemoveDirectoryW(path.c_str());
        } else {
            DeleteFileW(path.c_str());
        }
    }
    RemoveDirectoryW(folder.c_str());
}

bool write_file(const std::wstring& path, std::string_view bytes) {
    HANDLE file =
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    DWORD written = 0;
    const BOOL done = WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    CloseHandle(file);
    return done != FALSE && written == bytes.size();
}
