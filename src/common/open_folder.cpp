#include "common/open_folder.h"

#include <winternl.h>

#include "common/file_error.h"

namespace {

constexpr ULONG share_all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// Known to newer systems and headers only.
constexpr auto disposition_class_ex = static_cast<FILE_INFO_BY_HANDLE_CLASS>(21);
constexpr NTSTATUS status_delete_pending = static_cast<NTSTATUS>(0xC0000056);

struct DispositionEx {
    DWORD flags;
};
constexpr DWORD delete_at_once_even_if_read_only = 0x01 | 0x02 | 0x10;

/// Opens an entry of a folder as itself: a link is not followed.
NTSTATUS open_relative(HANDLE parent, const std::wstring& name, ACCESS_MASK access, ULONG options,
                       OwnedFile& file) {
    UNICODE_STRING text = {};
    text.Buffer = const_cast<wchar_t*>(name.data());
    text.Length = static_cast<USHORT>(name.size() * sizeof(wchar_t));
    text.MaximumLength = text.Length;
    OBJECT_ATTRIBUTES attributes = {};
    InitializeObjectAttributes(&attributes, &text, OBJ_CASE_INSENSITIVE, parent, nullptr);
    IO_STATUS_BLOCK io = {};
    HANDLE opened = nullptr;
    const NTSTATUS status = NtCreateFile(
        &opened, access | SYNCHRONIZE, &attributes, &io, nullptr, 0, share_all, FILE_OPEN,
        options | FILE_OPEN_REPARSE_POINT | FILE_OPEN_FOR_BACKUP_INTENT | FILE_SYNCHRONOUS_IO_NONALERT,
        nullptr, 0);
    if (NT_SUCCESS(status)) {
        file.reset(opened);
    }
    return status;
}

DWORD win32_error(NTSTATUS status) {
    return NT_SUCCESS(status) ? ERROR_SUCCESS : RtlNtStatusToDosError(status);
}

DWORD last_error_unless(BOOL succeeded) {
    return succeeded != FALSE ? ERROR_SUCCESS : GetLastError();
}

/// Marks an open file for deletion in the manner of older systems and of file systems that know no other.
DWORD mark_for_deletion(HANDLE file) {
    FILE_DISPOSITION_INFO disposition = {TRUE};
    return last_error_unless(
        SetFileInformationByHandle(file, FileDispositionInfo, &disposition, sizeof(disposition)));
}

DWORD set_attributes(HANDLE file, DWORD attributes) {
    FILE_BASIC_INFO information = {};
    // 0 would mean no change.
    information.FileAttributes = attributes == 0 ? FILE_ATTRIBUTE_NORMAL : attributes;
    return last_error_unless(
        SetFileInformationByHandle(file, FileBasicInfo, &information, sizeof(information)));
}

/// The same for a file that may be read-only.
DWORD mark_read_only_for_deletion(HANDLE parent, const std::wstring& name, HANDLE file) {
    const DWORD error = mark_for_deletion(file);
    FILE_ATTRIBUTE_TAG_INFO tag = {};
    OwnedFile writable;
    if (error != ERROR_ACCESS_DENIED ||
        GetFileInformationByHandleEx(file, FileAttributeTagInfo, &tag, sizeof(tag)) == FALSE ||
        (tag.FileAttributes & FILE_ATTRIBUTE_READONLY) == 0 ||
        !NT_SUCCESS(open_relative(parent, name, FILE_WRITE_ATTRIBUTES, 0, writable)) ||
        set_attributes(writable.get(), tag.FileAttributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY)) !=
            ERROR_SUCCESS) {
        return error;
    }
    const DWORD second_error = mark_for_deletion(file);
    if (second_error != ERROR_SUCCESS) {
        // What stays, stays as it was.
        set_attributes(writable.get(), tag.FileAttributes);
    }
    return second_error;
}

bool is_dot_entry(const std::wstring& name) {
    return name == L"." || name == L"..";
}

/// 0 where a file system has no numbers: it says 0 itself, or all ones.
ULONGLONG known_number(ULONGLONG number) {
    return number == ~0ULL ? 0 : number;
}

/// Whether an open folder is the listed one and no link that has taken its place.
bool is_listed_folder(HANDLE folder, const ListedEntry& entry) {
    BY_HANDLE_FILE_INFORMATION information = {};
    if (GetFileInformationByHandle(folder, &information) == FALSE ||
        (information.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
        return false;
    }
    const ULONGLONG number =
        known_number(static_cast<ULONGLONG>(information.nFileIndexHigh) << 32 | information.nFileIndexLow);
    return entry.number == 0 || number == 0 || entry.number == number;
}

} // namespace

bool ListedEntry::is_real_folder() const {
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0;
}

DWORD open_starting_folder(const std::wstring& path, OwnedFile& folder) {
    folder.reset(CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, share_all, nullptr, OPEN_EXISTING,
                             FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return folder ? ERROR_SUCCESS : GetLastError();
}

DWORD open_subfolder(HANDLE parent, const ListedEntry& entry, OwnedFile& folder) {
    const NTSTATUS status = open_relative(parent, entry.name, FILE_LIST_DIRECTORY | FILE_READ_ATTRIBUTES,
                                          FILE_DIRECTORY_FILE, folder);
    if (NT_SUCCESS(status) && !is_listed_folder(folder.get(), entry)) {
        folder.reset();
        return ERROR_DIRECTORY;
    }
    return win32_error(status);
}

DWORD list_open_folder(HANDLE folder, std::vector<ListedEntry>& entries) {
    // Large enough for any one entry; aligned as the records in it.
    std::vector<ULONGLONG> buffer(8192);
    auto* const start = reinterpret_cast<BYTE*>(buffer.data());
    const auto size_bytes = static_cast<DWORD>(buffer.size() * sizeof(buffer[0]));
    FILE_INFO_BY_HANDLE_CLASS request = FileIdBothDirectoryRestartInfo;
    while (GetFileInformationByHandleEx(folder, request, start, size_bytes) != FALSE) {
        request = FileIdBothDirectoryInfo;
        for (const BYTE* place = start;;) {
            const auto& record = *reinterpret_cast<const FILE_ID_BOTH_DIR_INFO*>(place);
            std::wstring name(record.FileName, record.FileNameLength / sizeof(wchar_t));
            if (!is_dot_entry(name)) {
                entries.push_back({std::move(name), record.FileAttributes,
                                   known_number(static_cast<ULONGLONG>(record.FileId.QuadPart))});
            }
            if (record.NextEntryOffset == 0) {
                break;
            }
            place += record.NextEntryOffset;
        }
    }
    const DWORD error = GetLastError();
    return error == ERROR_NO_MORE_FILES ? ERROR_SUCCESS : error;
}

DWORD delete_entry(HANDLE parent, const std::wstring& name) {
    OwnedFile file;
    const NTSTATUS status = open_relative(parent, name, DELETE | FILE_READ_ATTRIBUTES, 0, file);
    if (!NT_SUCCESS(status)) {
        return status == status_delete_pending ? ERROR_SUCCESS : win32_error(status);
    }
    DispositionEx disposition = {delete_at_once_even_if_read_only};
    const DWORD error = last_error_unless(
        SetFileInformationByHandle(file.get(), disposition_class_ex, &disposition, sizeof(disposition)));
    switch (error) {
    case ERROR_INVALID_FUNCTION:
    case ERROR_INVALID_PARAMETER:
    case ERROR_NOT_SUPPORTED:
        return mark_read_only_for_deletion(parent, name, file.get());
    default:
        return error;
    }
}

bool has_entry(HANDLE parent, const std::wstring& name) {
    OwnedFile file;
    const NTSTATUS status = open_relative(parent, name, FILE_READ_ATTRIBUTES, 0, file);
    return NT_SUCCESS(status) || (status != status_delete_pending && !is_not_found(win32_error(status)));
}
