#include "common/pending_operations.h"

#include <algorithm>
#include <array>

#include <windows.h>
#include <winternl.h>

#include "common/file_error.h"
#include "common/files.h"
#include "common/real_path.h"
#include "common/registry.h"

// NOLINTNEXTLINE(readability-identifier-naming): Windows' own name, which its headers leave out.
extern "C" NTSTATUS NTAPI NtOpenMutant(HANDLE* mutant, ACCESS_MASK access, OBJECT_ATTRIBUTES* attributes);

namespace {

constexpr const wchar_t* session_manager_key = L"SYSTEM\\CurrentControlSet\\Control\\Session Manager";

/// MoveFileEx appends to the second list when there is one, and begins one when the first cannot grow.
constexpr std::array<const wchar_t*, 2> list_values = {L"PendingFileRenameOperations",
                                                       L"PendingFileRenameOperations2"};

constexpr wchar_t lock_name[] = L"\\PendingRenameMutex";
constexpr DWORD longest_lock_wait_ms = 2000;

// A list that others change all the time is given up.
constexpr int max_attempts = 16;

constexpr std::wstring_view win32_prefix = L"\\\\?\\";
constexpr std::wstring_view nt_prefix = L"\\??\\";

/// Opens the lock, which lies outside the folder of names that OpenMutex knows. Empty where there is none.
OwnedHandle open_lock() {
    std::wstring name_buffer = lock_name;
    UNICODE_STRING name = {};
    name.Buffer = name_buffer.data();
    name.Length = static_cast<USHORT>(name_buffer.size() * sizeof(wchar_t));
    name.MaximumLength = name.Length;
    OBJECT_ATTRIBUTES attributes = {};
    InitializeObjectAttributes(&attributes, &name, 0, nullptr, nullptr);
    HANDLE lock = nullptr;
    return OwnedHandle(NT_SUCCESS(NtOpenMutant(&lock, SYNCHRONIZE, &attributes)) ? lock : nullptr);
}

/// Holds the lock under which MoveFileEx changes the lists. Without it, where there is none or its holder
/// does not let go, the work goes on all the same: the comparison before each writing remains.
class ListsLock {
  public:
    ListsLock() {
        const DWORD outcome = lock_ ? WaitForSingleObject(lock_.get(), longest_lock_wait_ms) : WAIT_FAILED;
        is_held_ = outcome == WAIT_OBJECT_0 || outcome == WAIT_ABANDONED;
    }
    ListsLock(const ListsLock&) = delete;
    ListsLock& operator=(const ListsLock&) = delete;
    ~ListsLock() {
        if (is_held_) {
            ReleaseMutex(lock_.get());
        }
    }

  private:
    OwnedHandle lock_ = open_lock();
    bool is_held_ = false;
};

/// The names under which the list may know a folder.
std::vector<std::wstring> listed_names_of(const std::wstring& folder) {
    std::vector<std::wstring> names;
    // As it is spelled, and as Windows writes down what it could open.
    for (const std::wstring& path : {full_path(folder), real_path(folder)}) {
        if (!path.empty()) {
            const size_t prefix = path.starts_with(win32_prefix) ? win32_prefix.size() : 0;
            names.push_back(std::wstring(nt_prefix) + path.substr(prefix));
        }
    }
    return names;
}

/// Whether an entry's path lies below the folder. Newer versions of Windows put "*" and a digit before it.
bool is_below(std::wstring_view path, std::wstring_view folder) {
    if (path.starts_with(L'*')) {
        path.remove_prefix(std::min(path.find_first_not_of(L"0123456789", 1), path.size()));
    }
    return path.size() > folder.size() + 1 && path[folder.size()] == L'\\' &&
           CompareStringOrdinal(path.data(), static_cast<int>(folder.size()), folder.data(),
                                static_cast<int>(folder.size()), TRUE) == CSTR_EQUAL;
}

/// Takes the first text off the list, with its terminator; nothing when there is none.
std::optional<std::wstring_view> take_text(std::wstring_view& list) {
    const size_t end = list.find(L'\0');
    if (end == std::wstring_view::npos) {
        return std::nullopt;
    }
    const std::wstring_view text = list.substr(0, end);
    list.remove_prefix(end + 1);
    return text;
}

/// The list as it is stored; nothing when it is absent, cannot be read or is no list of texts.
std::optional<std::wstring> read_list(HKEY key, const wchar_t* value) {
    DWORD size_bytes = 0;
    for (int attempt = 0; attempt < max_attempts; ++attempt) {
        std::wstring list((size_bytes / sizeof(wchar_t)) + 1, L'\0');
        size_bytes = static_cast<DWORD>(list.size() * sizeof(wchar_t));
        DWORD type = REG_NONE;
        const LSTATUS status =
            RegQueryValueExW(key, value, nullptr, &type, reinterpret_cast<BYTE*>(list.data()), &size_bytes);
        if (status == ERROR_SUCCESS && type == REG_MULTI_SZ && size_bytes % sizeof(wchar_t) == 0) {
            list.resize(size_bytes / sizeof(wchar_t));
            return list;
        }
        if (status != ERROR_MORE_DATA) {
            break;
        }
    }
    return std::nullopt;
}

/// Returns whether the system has accepted it.
bool write_list(HKEY key, const wchar_t* value, const std::wstring& list) {
    if (list.empty()) {
        return RegDeleteValueW(key, value) == ERROR_SUCCESS;
    }
    return RegSetValueExW(key, value, 0, REG_MULTI_SZ, reinterpret_cast<const BYTE*>(list.data()),
                          static_cast<DWORD>(list.size() * sizeof(wchar_t))) == ERROR_SUCCESS;
}

void cancel_deletions(HKEY key, const wchar_t* value, const std::vector<std::wstring>& folders) {
    // Until nothing of ours is listed: what was written is looked at once more.
    for (int attempt = 0; attempt < max_attempts; ++attempt) {
        const std::optional<std::wstring> list = read_list(key, value);
        const std::optional<std::wstring> kept =
            list ? without_deletions_below(*list, folders) : std::nullopt;
        if (!kept) {
            return;
        }
        if (read_list(key, value) == list && !write_list(key, value, *kept)) {
            // Nothing can be done about a refusal; the installation does not depend on it before a restart.
            return;
        }
    }
}

/// Refusals are ignored: there is no further way to get rid of the file.
void schedule_file_removal(const std::wstring& file) {
    if (MoveFileExW(file.c_str(), nullptr, MOVEFILE_DELAY_UNTIL_REBOOT) == FALSE) {
        return;
    }
    // The next start deletes no read-only file.
    const DWORD attributes = GetFileAttributesW(file.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        SetFileAttributesW(file.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
    }
}

} // namespace

std::optional<std::wstring> without_deletions_below(std::wstring_view list,
                                                    const std::vector<std::wstring>& folders) {
    const wchar_t terminator = L'\0';
    const std::wstring_view end_of_list(&terminator, 1);
    std::wstring kept;
    bool has_cancelled = false;
    while (list != end_of_list) {
        const std::wstring_view pair = list;
        const std::optional<std::wstring_view> from = take_text(list);
        const std::optional<std::wstring_view> to = take_text(list);
        if (!from || from->empty() || !to) {
            return std::nullopt;
        }
        const bool is_ours = to->empty() && std::ranges::any_of(folders, [&](const std::wstring& folder) {
                                 return is_below(*from, folder);
                             });
        if (is_ours) {
            has_cancelled = true;
        } else {
            kept += pair.substr(0, pair.size() - list.size());
        }
    }
    if (!has_cancelled) {
        return std::nullopt;
    }
    return kept.empty() ? kept : kept + terminator;
}

void schedule_removal_at_reboot(const std::wstring& folder) {
    const DWORD folder_attributes = GetFileAttributesW(folder.c_str());
    if (folder_attributes != INVALID_FILE_ATTRIBUTES &&
        (folder_attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
        return;
    }
    std::vector<FolderEntry> entries;
    try {
        entries = list_folder(folder);
    } catch (const FileError&) {
        // A folder that cannot be read has nothing to schedule.
        return;
    }
    for (const FolderEntry& entry : entries) {
        if (!entry.is_directory) {
            schedule_file_removal(entry.path);
        } else if (!entry.is_link) {
            schedule_removal_at_reboot(entry.path);
        }
    }
}

void cancel_pending_deletions_below(const std::wstring& folder) {
    const OwnedKey key = open_hklm_key(session_manager_key, KEY_QUERY_VALUE | KEY_SET_VALUE);
    if (!key) {
        // Nothing can be done about a key that may not be changed.
        return;
    }
    const std::vector<std::wstring> names = listed_names_of(folder);
    const ListsLock lock;
    for (const wchar_t* const value : list_values) {
        cancel_deletions(key.get(), value, names);
    }
}
