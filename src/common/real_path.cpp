#include "common/real_path.h"

#include <windows.h>

#include "common/paths.h"

namespace {

std::wstring path_of_open(HANDLE file) {
    // With its terminator, when there is no room.
    const DWORD size = GetFinalPathNameByHandleW(file, nullptr, 0, 0);
    std::wstring path(size, L'\0');
    const DWORD length = GetFinalPathNameByHandleW(file, path.data(), size, 0);
    path.resize(length < size ? length : 0);
    return path;
}

} // namespace

std::wstring full_path(const std::wstring& path) {
    std::wstring full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
    full.resize(GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    return file_name_of(full).empty() ? parent_of(full) : full;
}

std::wstring real_path(const std::wstring& path) {
    const std::wstring full = full_path(path);
    for (std::wstring place = full; !place.empty(); place = parent_of(place)) {
        if (const OwnedFile entry = open_entry(place)) {
            const std::wstring real = path_of_open(entry.get());
            const size_t missing = full.find_first_not_of(L'\\', place.size());
            return real.empty() || missing == std::wstring::npos ? real
                                                                 : join_path(real, full.substr(missing));
        }
        if (place == parent_of(place)) {
            break;
        }
    }
    return {};
}

OwnedFile open_entry(const std::wstring& path) {
    return OwnedFile(CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES,
                                 FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                 OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}
