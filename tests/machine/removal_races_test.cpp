// What a removal does when other programs use, move or replace what it removes, and how it asks the system.

#include <algorithm>
#include <doctest/doctest.h>
#include <functional>
#include <string>
#include <vector>

#include <windows.h>
#include <winternl.h>

#include "before_each_case.h"
#include "common/files.h"
#include "file_error_text.h"
#include "intercepted_call.h"
#include "readable.h"
#include "test_files.h"

namespace {

constexpr auto disposition_class_ex = static_cast<FILE_INFO_BY_HANDLE_CLASS>(21);

// Written by the stand-ins below and by the tests, on the test's thread.
std::vector<std::wstring> g_requests;
std::function<void(const std::wstring&)> g_before_opening;
std::wstring g_disguised;
BY_HANDLE_FILE_INFORMATION g_disguise = {};
int g_open_folders = 0;
int g_most_open_folders = 0;
const BeforeEachCase start_anew([] {
    g_requests.clear();
    g_before_opening = nullptr;
    g_disguised.clear();
    g_disguise = {};
    g_open_folders = 0;
    g_most_open_folders = 0;
});

std::wstring name_of(HANDLE file) {
    wchar_t path[MAX_PATH] = {};
    GetFinalPathNameByHandleW(file, path, MAX_PATH, 0);
    const std::wstring text = path;
    return text.substr(text.rfind(L'\\') + 1);
}

BOOL real_set(HANDLE file, FILE_INFO_BY_HANDLE_CLASS request, LPVOID information, DWORD size) {
    return real_function<decltype(SetFileInformationByHandle)>("SetFileInformationByHandle")(
        file, request, information, size);
}

void note_request(HANDLE file, FILE_INFO_BY_HANDLE_CLASS request, const void* information) {
    std::wstring text = name_of(file) + L" ";
    if (request == disposition_class_ex) {
        text += L"disposition flags " + std::to_wstring(*static_cast<const DWORD*>(information));
    } else if (request == FileDispositionInfo) {
        text += L"disposition";
    } else {
        CHECK(request == FileBasicInfo);
        text += L"attributes " +
                std::to_wstring(static_cast<const FILE_BASIC_INFO*>(information)->FileAttributes);
    }
    g_requests.push_back(text);
}

/// A newer system, which takes everything in one request.
BOOL WINAPI newer_system(HANDLE file, FILE_INFO_BY_HANDLE_CLASS request, LPVOID information, DWORD /*size*/) {
    note_request(file, request, information);
    FILE_BASIC_INFO plain = {};
    plain.FileAttributes = FILE_ATTRIBUTE_NORMAL;
    const OwnedFile writable(ReOpenFile(file, FILE_WRITE_ATTRIBUTES, 7, 0));
    real_set(writable.get(), FileBasicInfo, &plain, sizeof plain);
    FILE_DISPOSITION_INFO disposition = {TRUE};
    return real_set(file, FileDispositionInfo, &disposition, sizeof disposition);
}

/// A system that knows the older request alone.
BOOL WINAPI older_system(HANDLE file, FILE_INFO_BY_HANDLE_CLASS request, LPVOID information, DWORD size) {
    note_request(file, request, information);
    if (request == disposition_class_ex) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    return real_set(file, request, information, size);
}

/// An older system, and somebody who lets nobody delete.
BOOL WINAPI older_system_that_refuses(HANDLE file, FILE_INFO_BY_HANDLE_CLASS request, LPVOID information,
                                      DWORD size) {
    if (request == FileDispositionInfo) {
        note_request(file, request, information);
        SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
    }
    return older_system(file, request, information, size);
}

BOOL WINAPI somebody_is_faster(HANDLE file, FILE_INFO_BY_HANDLE_CLASS request, LPVOID information,
                               DWORD size) {
    if (name_of(file) == L"a.txt") {
        real_set(file, FileDispositionInfo, information, size);
        SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
    }
    return real_set(file, request, information, size);
}

BOOL WINAPI disguised(HANDLE file, LPBY_HANDLE_FILE_INFORMATION information) {
    if (real_function<decltype(GetFileInformationByHandle)>("GetFileInformationByHandle")(
            file, information) == FALSE) {
        return FALSE;
    }
    if (name_of(file) == g_disguised) {
        information->dwFileAttributes |= g_disguise.dwFileAttributes;
        information->nFileIndexLow += g_disguise.nFileIndexLow;
    }
    return TRUE;
}

NTSTATUS NTAPI watched_open(PHANDLE file, ACCESS_MASK access, POBJECT_ATTRIBUTES attributes,
                            PIO_STATUS_BLOCK status, PLARGE_INTEGER size, ULONG file_attributes, ULONG share,
                            ULONG disposition, ULONG options, PVOID extended, ULONG extended_size) {
    const UNICODE_STRING& name = *attributes->ObjectName;
    if (g_before_opening) {
        g_before_opening(std::wstring(name.Buffer, name.Length / sizeof(wchar_t)));
    }
    g_most_open_folders = std::max(g_most_open_folders, ++g_open_folders);
    return real_function<decltype(NtCreateFile)>("NtCreateFile")(file, access, attributes, status, size,
                                                                 file_attributes, share, disposition, options,
                                                                 extended, extended_size);
}

BOOL WINAPI watched_close(HANDLE handle) {
    --g_open_folders;
    return real_function<decltype(CloseHandle)>("CloseHandle")(handle);
}

NTSTATUS NTAPI unreadable_folders(PHANDLE file, ACCESS_MASK access, POBJECT_ATTRIBUTES attributes,
                                  PIO_STATUS_BLOCK status, PLARGE_INTEGER size, ULONG file_attributes,
                                  ULONG share, ULONG disposition, ULONG options, PVOID extended,
                                  ULONG extended_size) {
    if ((access & FILE_LIST_DIRECTORY) != 0) {
        return static_cast<NTSTATUS>(0xC0000022); // STATUS_ACCESS_DENIED
    }
    return real_function<decltype(NtCreateFile)>("NtCreateFile")(file, access, attributes, status, size,
                                                                 file_attributes, share, disposition, options,
                                                                 extended, extended_size);
}

/// Wine opens such a file, Windows does not.
NTSTATUS NTAPI file_on_its_way_out(PHANDLE file, ACCESS_MASK access, POBJECT_ATTRIBUTES attributes,
                                   PIO_STATUS_BLOCK status, PLARGE_INTEGER size, ULONG file_attributes,
                                   ULONG share, ULONG disposition, ULONG options, PVOID extended,
                                   ULONG extended_size) {
    const UNICODE_STRING& name = *attributes->ObjectName;
    if (std::wstring(name.Buffer, name.Length / sizeof(wchar_t)) == L"a.txt") {
        return static_cast<NTSTATUS>(0xC0000056); // STATUS_DELETE_PENDING
    }
    return real_function<decltype(NtCreateFile)>("NtCreateFile")(file, access, attributes, status, size,
                                                                 file_attributes, share, disposition, options,
                                                                 extended, extended_size);
}

/// Folders one in another, so deep that only literal paths reach the last.
std::wstring make_deep_tree(const std::wstring& root, int depth) {
    std::wstring path = L"\\\\?\\" + root;
    REQUIRE(CreateDirectoryW(path.c_str(), nullptr) != FALSE);
    for (int level = 0; level < depth; ++level) {
        path += L"\\d";
        REQUIRE(CreateDirectoryW(path.c_str(), nullptr) != FALSE);
    }
    write_file(path + L"\\last.txt", "x");
    return path;
}

OwnedFile open_folder_with(const std::wstring& folder, DWORD access, DWORD share) {
    OwnedFile handle(CreateFileW(folder.c_str(), access, share, nullptr, OPEN_EXISTING,
                                 FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    REQUIRE(handle);
    return handle;
}

} // namespace

TEST_CASE("a newer system is asked once for each entry and takes read-only files too") {
    write_file(L"C:\\tree\\a.txt", "x", FILE_ATTRIBUTE_READONLY);
    const InterceptedCall set("SetFileInformationByHandle", newer_system);
    remove_tree(L"C:\\tree");
    CHECK_FALSE(is_there(L"C:\\tree"));
    // Delete, in the manner of POSIX, and whether or not it is read-only.
    CHECK(g_requests ==
          std::vector<std::wstring>{L"a.txt disposition flags 19", L"tree disposition flags 19"});
}

TEST_CASE("an older system is asked in its own manner and a read-only file after it has become writable") {
    write_file(L"C:\\tree\\a.txt", "x", FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
    write_file(L"C:\\tree\\b.txt", "x");
    const DWORD hidden = attributes_of(L"C:\\tree\\a.txt") & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY);
    const InterceptedCall set("SetFileInformationByHandle", older_system);
    remove_tree(L"C:\\tree");
    CHECK_FALSE(is_there(L"C:\\tree"));
    std::sort(g_requests.begin(), g_requests.end() - 2);
    CHECK(g_requests == std::vector<std::wstring>{L"a.txt attributes " + std::to_wstring(hidden),
                                                  L"a.txt disposition", L"a.txt disposition",
                                                  L"a.txt disposition flags 19", L"b.txt disposition",
                                                  L"b.txt disposition flags 19", L"tree disposition flags 19",
                                                  L"tree disposition"});
}

TEST_CASE("a read-only file that stays is read-only as before") {
    write_file(L"C:\\tree\\a.txt", "x", FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
    const DWORD before = attributes_of(L"C:\\tree\\a.txt");
    const DWORD writable = before & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY);
    REQUIRE(before != writable);
    const InterceptedCall set("SetFileInformationByHandle", older_system_that_refuses);
    CHECK(error_of([] { remove_tree(L"C:\\tree"); }) ==
          file_error_text("remove_all", ERROR_ACCESS_DENIED, {L"C:\\tree\\a.txt"}));
    CHECK(attributes_of(L"C:\\tree\\a.txt") == before);
    REQUIRE(g_requests.size() > 5);
    CHECK(std::vector<std::wstring>(g_requests.begin(), g_requests.begin() + 5) ==
          std::vector<std::wstring>{L"a.txt disposition flags 19", L"a.txt disposition",
                                    L"a.txt attributes " + std::to_wstring(writable), L"a.txt disposition",
                                    L"a.txt attributes " + std::to_wstring(before)});
}

TEST_CASE("a file that goes as soon as somebody lets go of it is no error, only that its folder stays") {
    write_file(L"C:\\tree\\a.txt", "x");
    {
        const InterceptedCall open("NtCreateFile", file_on_its_way_out);
        CHECK(error_of([] { remove_tree(L"C:\\tree"); }) ==
              file_error_text("remove_all", ERROR_DIR_NOT_EMPTY, {L"C:\\tree"}));
    }
    CHECK(is_there(L"C:\\tree\\a.txt"));
}

TEST_CASE("a folder that a link has replaced since it was listed is not entered") {
    write_file(L"C:\\tree\\swapped\\precious.txt", "precious");
    write_file(L"C:\\tree\\z.txt", "x");
    const InterceptedCall information("GetFileInformationByHandle", disguised);
    g_disguised = L"swapped";
    g_disguise.dwFileAttributes = FILE_ATTRIBUTE_REPARSE_POINT;
    // Here it is no link after all, and so it cannot be taken away as one.
    CHECK(error_of([] { remove_tree(L"C:\\tree"); }) ==
          file_error_text("remove_all", ERROR_DIR_NOT_EMPTY, {L"C:\\tree\\swapped"}));
    CHECK(paths_below(L"C:\\tree") == std::vector<std::wstring>{L"swapped\\", L"swapped\\precious.txt"});

    // The same for another folder in its place, which the system shows by its number alone.
    g_disguise = {};
    g_disguise.nFileIndexLow = 1;
    CHECK(error_of([] { remove_tree(L"C:\\tree"); }) ==
          file_error_text("remove_all", ERROR_DIR_NOT_EMPTY, {L"C:\\tree\\swapped"}));
    CHECK(bytes_of(L"C:\\tree\\swapped\\precious.txt") == "precious");
    g_disguise = {};
    remove_tree(L"C:\\tree");
    CHECK_FALSE(is_there(L"C:\\tree"));
}

TEST_CASE("a folder that becomes a link in the moment before it is opened is not entered") {
    write_file(L"C:\\elsewhere\\precious.txt", "precious");
    write_file(L"C:\\tree\\swapped\\own.txt", "x");
    write_file(L"C:\\tree\\z.txt", "x");
    g_before_opening = [](const std::wstring& name) {
        if (name == L"swapped" && !is_there(L"C:\\moved")) {
            REQUIRE(MoveFileW(L"C:\\tree\\swapped", L"C:\\moved") != FALSE);
            make_link(L"C:\\tree\\swapped", L"C:\\elsewhere");
        }
    };
    const InterceptedCall open("NtCreateFile", watched_open);
    // Wine cannot take such a link away; Windows can.
    CHECK(error_of([] { remove_tree(L"C:\\tree"); }) ==
          file_error_text("remove_all", ERROR_DIR_NOT_EMPTY, {L"C:\\tree\\swapped"}));
    CHECK(bytes_of(L"C:\\elsewhere\\precious.txt") == "precious");
    CHECK(paths_below(L"C:\\tree") == std::vector<std::wstring>{L"swapped\\"});
}

TEST_CASE("a folder goes although somebody holds it open for deletion or works in it") {
    write_file(L"C:\\tree\\sub\\a.txt", "x");
    {
        const OwnedFile root = open_folder_with(L"C:\\tree", DELETE | FILE_LIST_DIRECTORY, 7);
        CHECK(error_of([] { remove_tree(L"C:\\tree"); }) == "nothing thrown");
        CHECK(paths_below(L"C:\\tree").empty());
        // A second removal meets a folder that is on its way out.
        CHECK(error_of([] { remove_tree(L"C:\\tree"); }) == "nothing thrown");
    }
    CHECK_FALSE(is_there(L"C:\\tree"));

    // The current folder of a program cannot go, but everything in it.
    write_file(L"C:\\tree\\sub\\a.txt", "x");
    write_file(L"C:\\tree\\sub\\b\\b.txt", "x");
    const OwnedFile current =
        open_folder_with(L"C:\\tree\\sub", FILE_LIST_DIRECTORY, FILE_SHARE_READ | FILE_SHARE_WRITE);
    CHECK(error_of([] { remove_tree(L"C:\\tree"); }) ==
          file_error_text("remove_all", ERROR_SHARING_VIOLATION, {L"C:\\tree\\sub"}));
    CHECK(paths_below(L"C:\\tree") == std::vector<std::wstring>{L"sub\\"});
}

TEST_CASE("a removal that met an error has succeeded when in the end everything has gone") {
    write_file(L"C:\\tree\\a.txt", "x");
    const InterceptedCall set("SetFileInformationByHandle", somebody_is_faster);
    CHECK(error_of([] { remove_tree(L"C:\\tree"); }) == "nothing thrown");
    CHECK_FALSE(is_there(L"C:\\tree"));
}

TEST_CASE("an empty folder that may not be read goes all the same") {
    make_folder(L"C:\\empty");
    make_folder(L"C:\\full\\sub");
    const InterceptedCall open("NtCreateFile", unreadable_folders);
    remove_tree(L"C:\\empty");
    CHECK_FALSE(is_there(L"C:\\empty"));
    CHECK(error_of([] { remove_tree(L"C:\\full"); }) ==
          file_error_text("remove_all", ERROR_ACCESS_DENIED, {L"C:\\full"}));
    CHECK(is_there(L"C:\\full\\sub"));
}

TEST_CASE("a tree of any depth goes with a bounded number of open folders") {
    make_deep_tree(L"C:\\deep", 200);
    {
        const InterceptedCall open("NtCreateFile", watched_open);
        const InterceptedCall close("CloseHandle", watched_close);
        remove_tree(L"C:\\deep");
    }
    CHECK_FALSE(is_there(L"C:\\deep"));
    CHECK(g_most_open_folders > 100);
    CHECK(g_most_open_folders < 140);
}

TEST_CASE("a folder that is moved away from above the work takes what is in it out of reach") {
    make_deep_tree(L"C:\\deep", 200);
    int opened_root = 0;
    g_before_opening = [&](const std::wstring& name) {
        // On the way up the folders that were let go are opened again, from the first one on.
        opened_root += name == L"deep" ? 1 : 0;
        if (opened_root == 2 && name == L"deep") {
            REQUIRE(MoveFileW(L"C:\\deep\\d\\d", L"C:\\moved") != FALSE);
            make_folder(L"C:\\deep\\d\\d\\d");
            write_file(L"C:\\deep\\d\\d\\d\\other.txt", "somebody else's");
        }
    };
    const InterceptedCall open("NtCreateFile", watched_open);
    CHECK(error_of([] { remove_tree(L"C:\\deep"); }) ==
          file_error_text("remove_all", ERROR_DIR_NOT_EMPTY, {L"C:\\deep\\d\\d"}));
    CHECK(bytes_of(L"C:\\deep\\d\\d\\d\\other.txt") == "somebody else's");
    CHECK(is_there(L"C:\\moved\\d"));
}

TEST_CASE("names that only literal paths can spell go and the root of a drive does not") {
    make_folder(L"C:\\tree");
    for (const wchar_t* name : {L"ends in a dot.", L"ends in a blank ", L"nul.txt"}) {
        write_file(std::wstring(L"\\\\?\\C:\\tree\\") + name, "x");
    }
    remove_tree(L"C:/tree/");
    CHECK_FALSE(is_there(L"C:\\tree"));
    CHECK(error_of([] { remove_tree(L"C:\\"); }) ==
          file_error_text("remove_all", ERROR_INVALID_PARAMETER, {L"C:\\"}));
}
