#include "common/paths.h"

#include <algorithm>

namespace {

constexpr wchar_t separators[] = L"\\/";

bool is_separator(wchar_t c) {
    return c == L'\\' || c == L'/';
}

bool begins_with_drive(const std::wstring& path, size_t start) {
    if (path.size() < start + 2 || path[start + 1] != L':') {
        return false;
    }
    const wchar_t letter = path[start];
    return (letter >= L'A' && letter <= L'Z') || (letter >= L'a' && letter <= L'z');
}

/// The end of the part that starts at `start`.
size_t end_of_part(const std::wstring& path, size_t start) {
    return std::min(path.find_first_of(separators, start), path.size());
}

/// Length of the drive, or of server and share, or of the prefix that tells Windows to take the rest as it
/// is.
size_t root_name_length(const std::wstring& path) {
    if (path.size() < 2 || !is_separator(path[0]) || !is_separator(path[1])) {
        return begins_with_drive(path, 0) ? 2 : 0;
    }
    size_t start = 2;
    if (path.compare(0, 8, L"\\\\?\\UNC\\") == 0) {
        start = 8;
    } else if (path.compare(0, 4, L"\\\\?\\") == 0) {
        return begins_with_drive(path, 4) ? 6 : end_of_part(path, 4);
    }
    const size_t share = end_of_part(path, start) + 1;
    return share < path.size() ? end_of_part(path, share) : path.size();
}

/// The same with the separator behind it.
size_t root_length(const std::wstring& path) {
    const size_t length = root_name_length(path);
    return length < path.size() && is_separator(path[length]) ? length + 1 : length;
}

/// Where the file name begins.
size_t file_name_start(const std::wstring& path) {
    const size_t separator = path.find_last_of(separators);
    const size_t behind_separator = separator == std::wstring::npos ? 0 : separator + 1;
    return std::max(behind_separator, root_length(path));
}

} // namespace

std::wstring join_path(const std::wstring& folder, const std::wstring& name) {
    const size_t folder_root = root_name_length(folder);
    if (root_name_length(name) != 0) {
        return name;
    }
    if (!name.empty() && is_separator(name[0])) {
        return folder.substr(0, folder_root) + name;
    }
    const bool needs_no_separator =
        folder.empty() || is_separator(folder.back()) || (folder.size() == 2 && folder_root == 2);
    return folder + (needs_no_separator ? L"" : L"\\") + name;
}

std::wstring file_name_of(const std::wstring& path) {
    return path.substr(file_name_start(path));
}

std::wstring parent_of(const std::wstring& path) {
    const size_t root = root_length(path);
    size_t end = file_name_start(path);
    while (end > root && is_separator(path[end - 1])) {
        --end;
    }
    return path.substr(0, end);
}

std::wstring extension_of(const std::wstring& path) {
    const std::wstring name = file_name_of(path);
    const size_t dot = name.find_last_of(L'.');
    if (dot == std::wstring::npos || dot == 0 || name == L"..") {
        return {};
    }
    return name.substr(dot);
}
