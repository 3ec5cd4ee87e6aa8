#include "common/file_identity.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <optional>

#include <windows.h>

#include "common/file_error.h"
#include "common/paths.h"
#include "common/real_path.h"

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

} // namespace

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
    std::wstring place = real_path(path);
    while (identity_of_path(place) != wanted) {
        std::wstring parent = parent_of(place);
        if (parent.empty() || parent == place) {
            return false;
        }
        place = std::move(parent);
    }
    return true;
}
