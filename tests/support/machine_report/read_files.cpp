#include "read_files.h"

#include <algorithm>

namespace {

void append_folder(const std::wstring& folder, const std::wstring& prefix, int depth, FolderTree& tree) {
    WIN32_FIND_DATAW found = {};
    HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return;
    }
    std::vector<TreeEntry> here;
    do {
        const std::wstring name = found.cFileName;
        if (name == L"." || name == L"..") {
            continue;
        }
        TreeEntry entry;
        entry.path = prefix + name;
        entry.name = name;
        entry.depth = depth;
        entry.is_folder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        entry.is_link = (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
        entry.size_bytes = (uint64_t{found.nFileSizeHigh} << 32) | found.nFileSizeLow;
        here.push_back(std::move(entry));
    } while (FindNextFileW(search, &found) != FALSE);
    FindClose(search);

    // The order in which a file system gives names differs from machine to machine.
    std::sort(here.begin(), here.end(), [](const TreeEntry& a, const TreeEntry& b) {
        return CompareStringOrdinal(a.name.c_str(), -1, b.name.c_str(), -1, TRUE) == CSTR_LESS_THAN;
    });
    for (TreeEntry& entry : here) {
        const bool enter = entry.is_folder && !entry.is_link;
        const std::wstring below = L"\\" + entry.name;
        const std::wstring path_below = entry.path + L"\\";
        tree.entries.push_back(std::move(entry));
        if (enter) {
            append_folder(folder + below, path_below, depth + 1, tree);
        }
    }
}

} // namespace

std::optional<FolderTree> read_tree(const std::wstring& root) {
    const DWORD attributes = GetFileAttributesW(root.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
        return std::nullopt;
    }
    FolderTree tree;
    tree.root = root;
    append_folder(root, L"", 0, tree);
    return tree;
}

bool holds_a_file(const FolderTree& tree) {
    return std::any_of(tree.entries.begin(), tree.entries.end(),
                       [](const TreeEntry& entry) { return !entry.is_folder || entry.is_link; });
}

std::optional<std::string> read_file(const std::wstring& path) {
    HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                              OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return std::nullopt;
    }
    std::string bytes;
    std::vector<char> part(size_t{256} * 1024);
    DWORD count = 0;
    while (ReadFile(file, part.data(), static_cast<DWORD>(part.size()), &count, nullptr) != FALSE &&
           count > 0) {
        bytes.append(part.data(), count);
    }
    CloseHandle(file);
    return bytes;
}
