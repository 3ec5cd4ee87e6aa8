#include "common/file_identity.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <windows.h>

#include "common/file_error.h"
#include "common/paths.h"

namespace {

struct FileIdentity {
    std::uint64_t volume = 0;
    std::array<BYTE, 16> number = {};

    bool operator==(const FileIdentity&) const = default;
};

/// Nothing, with the reason in the last error, when the system cannot tell.
std::optional<FileIdentity> identity_of(HANDLE file) {
    FileIdentity identity;
    FILE_ID_INFO wide = {};
    if (GetFileInformationByHandleEx(file, FileIdInfo, &wide, sizeof(wide)) != FALSE) {
        identity.volume = wide.VolumeSerialNumber;
        std::copy(std::begin(wide.FileId.Identifier), std::end(wide.FileId.Identifier),
                  identity.number.begin());
        return identity;
    }
    // Not every file system answers that.
    BY_HANDLE_FILE_INFORMATION narrow = {};
    if (GetFileInformationByHandle(file, &narrow) == FALSE) {
        return std::nullopt;
    }
    identity.volume = narrow.dwVolumeSerialNumber;
    const DWORD number[] = {narrow.nFileIndexLow, narrow.nFileIndexHigh};
    std::memcpy(identity.number.data(), number, sizeof(number));
    return identity;
}

std::optional<FileIdentity> identity_of_path(const std::wstring& path) {
    const OwnedFile file = open_entry(path);
    return file ? identity_of(file.get()) : std::nullopt;
}

FileIdentity identity_or_error(const std::wstring& path, const std::wstring& a, const std::wstring& b) {
    const std::optional<FileIdentity> identity = identity_of_path(path);
    if (!identity) {
        throw FileError("equivalent", GetLastError(), a, b);
    }
    return *identity;
}

/// Where an open folder really lies; empty when the system cannot tell.
std::wstring real_path(HANDLE folder) {
    std::wstring path(MAX_PATH, L'\0');
    DWORD length = GetFinalPathNameByHandleW(folder, path.data(), static_cast<DWORD>(path.size()), 0);
    if (length > path.size()) {
        path.resize(length);
        length = GetFinalPathNameByHandleW(folder, path.data(), static_cast<DWORD>(path.size()), 0);
    }
    path.resize(length < path.size() ? length : 0);
    return path;
}

/// The real path of the deepest part of a path that exists; the path itself when the system cannot tell.
std::wstring real_existing_part(const std::wstring& path) {
    for (std::wstring place = path; !place.empty(); place = parent_of(place)) {
        if (const OwnedFile folder = open_entry(place)) {
            const std::wstring real = real_path(folder.get());
            return real.empty() ? place : real;
        }
        if (place == parent_of(place)) {
            break;
        }
    }
    return path;
}

} // namespace

OwnedFile open_entry(const std::wstring& path) {
    return OwnedFile(CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES,
                                 FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                 OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

bool is_same_entry(const std::wstring& a, const std::wstring& b) {
    return identity_or_error(a, a, b) == identity_or_error(b, a, b);
}

bool is_same_existing_entry(const std::wstring& a, const std::wstring& b) {
    const std::optional<FileIdentity> first = identity_of_path(a);
    return first && first == identity_of_path(b);
}

bool lies_inside(const std::wstring& path, const std::wstring& folder) {
    const std::optional<FileIdentity> wanted = identity_of_path(folder);
    if (!wanted) {
        return false;
    }
    std::wstring place = real_existing_part(path);
    while (identity_of_path(place) != wanted) {
        std::wstring parent = parent_of(place);
        if (parent.empty() || parent == place) {
            return false;
        }
        place = std::move(parent);
    }
    return true;
}
