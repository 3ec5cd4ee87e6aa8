#include "common/files.h"

#include <algorithm>
#include <doctest/doctest.h>
#include <string>
#include <vector>

#include <windows.h>

#include "common/file_error.h"
#include "common/file_identity.h"
#include "file_error_text.h"
#include "intercepted_call.h"
#include "readable.h"
#include "test_files.h"

namespace {

DWORD WINAPI attributes_denied(LPCWSTR /*path*/) {
    SetLastError(ERROR_ACCESS_DENIED);
    return INVALID_FILE_ATTRIBUTES;
}

std::vector<std::wstring> names_in(const std::wstring& folder) {
    std::vector<std::wstring> names;
    for (const FolderEntry& entry : list_folder(folder)) {
        CHECK(entry.path == folder + L"\\" + entry.name);
        names.push_back(entry.name + (entry.is_directory ? L" folder" : L"") +
                        (entry.is_link ? L" link" : L""));
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// Every path is a link, as only real Windows makes them.
DWORD WINAPI link_attributes(LPCWSTR /*path*/) {
    return FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_REPARSE_POINT;
}

DWORD g_refusal = ERROR_SUCCESS;

HANDLE WINAPI refused_open(LPCWSTR /*path*/, DWORD access, DWORD /*share*/,
                           LPSECURITY_ATTRIBUTES /*security*/, DWORD disposition, DWORD flags,
                           HANDLE /*model*/) {
    CHECK(access == FILE_READ_ATTRIBUTES);
    CHECK(disposition == OPEN_EXISTING);
    CHECK(flags == FILE_FLAG_BACKUP_SEMANTICS);
    SetLastError(g_refusal);
    return INVALID_HANDLE_VALUE;
}

/// A file system, or an older system, that knows no 128 bits.
BOOL WINAPI no_wide_identity(HANDLE /*file*/, FILE_INFO_BY_HANDLE_CLASS request, LPVOID /*information*/,
                             DWORD /*size*/) {
    CHECK(request == FileIdInfo);
    SetLastError(ERROR_INVALID_PARAMETER);
    return FALSE;
}

BOOL WINAPI no_narrow_identity(HANDLE /*file*/, LPBY_HANDLE_FILE_INFORMATION /*information*/) {
    SetLastError(ERROR_GEN_FAILURE);
    return FALSE;
}

/// The last byte of each of the next identities, whose other bytes are all alike.
std::vector<BYTE> g_upper_halves; // on the test's thread

BOOL WINAPI identity_with_upper_half(HANDLE /*file*/, FILE_INFO_BY_HANDLE_CLASS /*request*/,
                                     LPVOID information, DWORD size) {
    REQUIRE(size == sizeof(FILE_ID_INFO));
    auto& identity = *static_cast<FILE_ID_INFO*>(information);
    identity = {};
    identity.FileId.Identifier[15] = g_upper_halves.front();
    g_upper_halves.erase(g_upper_halves.begin());
    return TRUE;
}

BOOL WINAPI same_narrow_identity(HANDLE /*file*/, LPBY_HANDLE_FILE_INFORMATION information) {
    *information = {};
    return TRUE;
}

} // namespace

TEST_CASE("an entry exists or is not found and everything else is an error") {
    {
        write_file(L"C:\\Here\\file.txt", "x", FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
        make_folder(L"C:\\Here\\folder");
        make_link(L"C:\\Here\\link", L"C:\\Here\\folder");
        for (const wchar_t* path : {L"C:\\Here", L"C:\\Here\\", L"C:\\HERE\\FILE.TXT", L"C:\\Here\\folder",
                                    L"C:\\Here\\link", L"C:\\Here\\.\\folder\\..\\file.txt"}) {
            CAPTURE(path);
            CHECK(entry_exists(path));
        }
        for (const wchar_t* path :
             {L"", L"C:\\Here\\none", L"C:\\None\\at\\all", L"Q:\\none", L"C:\\Here\\a|b<c>",
              L"\"C:\\Here\\file.txt\"", L"C:\\Here\\file.txt\\below"}) {
            CAPTURE(path);
            CHECK_FALSE(entry_exists(path));
        }
    }
    {
        const InterceptedCall denied("GetFileAttributesW", attributes_denied);
        CHECK(error_of([] { entry_exists(L"C:\\Here\\file.txt"); }) ==
              file_error_text("exists", ERROR_ACCESS_DENIED, {L"C:\\Here\\file.txt"}));
        CHECK(error_of([] { remove_tree(L"C:\\Here\\file.txt"); }) ==
              file_error_text("remove_all", ERROR_ACCESS_DENIED, {L"C:\\Here\\file.txt"}));
    }
}

TEST_CASE("a link exists when what it leads to does and a reparse point of another kind always") {
    write_file(L"C:\\Here\\link", "x");
    const InterceptedCall links("GetFileAttributesW", link_attributes);
    CHECK(entry_exists(L"C:\\Here\\link"));
    const InterceptedCall open("CreateFileW", refused_open);
    g_refusal = ERROR_FILE_NOT_FOUND;
    CHECK_FALSE(entry_exists(L"C:\\Here\\link"));
    g_refusal = ERROR_PATH_NOT_FOUND;
    CHECK_FALSE(entry_exists(L"C:\\Here\\link"));
    g_refusal = ERROR_CANT_ACCESS_FILE;
    CHECK(entry_exists(L"C:\\Here\\link"));
    g_refusal = ERROR_ACCESS_DENIED;
    CHECK(error_of([] { entry_exists(L"C:\\Here\\link"); }) ==
          file_error_text("exists", ERROR_ACCESS_DENIED, {L"C:\\Here\\link"}));
}

TEST_CASE("the same entry is known in every spelling and a missing one is an error") {
    {
        const std::wstring file = L"C:\\Here\\file.txt";
        write_file(file, "x");
        write_file(L"C:\\Here\\twin.txt", "x");
        make_folder(L"C:\\Other");
        REQUIRE(CreateHardLinkW(L"C:\\Here\\hard.txt", file.c_str(), nullptr) != FALSE);
        make_link(L"C:\\Linked", L"C:\\Here");
        for (const wchar_t* folder : {L"C:\\Here", L"C:\\HERE", L"c:\\here\\", L"C:\\.\\Here",
                                      L"C:\\Other\\..\\Here", L"C:/Here/", L"C:\\Linked"}) {
            CAPTURE(folder);
            CHECK(is_same_entry(L"C:\\Here", folder));
            CHECK(is_same_entry(folder, L"C:\\Here"));
            CHECK_FALSE(is_same_entry(folder, L"C:\\Other"));
        }
        CHECK(is_same_entry(file, L"C:\\Here\\hard.txt"));
        CHECK(is_same_entry(file, L"C:\\Linked\\FILE.txt"));
        CHECK_FALSE(is_same_entry(file, L"C:\\Here\\twin.txt"));
        const OwnedFile in_use = lock_file(file);
        CHECK(is_same_entry(file, L"C:\\Here\\hard.txt"));
    }
    {
        write_file(L"C:\\Here\\file.txt", "x");
        CHECK(
            error_of([] { is_same_entry(L"C:\\Here\\none", L"C:\\Here\\file.txt"); }) ==
            file_error_text("equivalent", ERROR_FILE_NOT_FOUND, {L"C:\\Here\\none", L"C:\\Here\\file.txt"}));
        CHECK(
            error_of([] { is_same_entry(L"C:\\Here\\file.txt", L"C:\\None\\none"); }) ==
            file_error_text("equivalent", ERROR_PATH_NOT_FOUND, {L"C:\\Here\\file.txt", L"C:\\None\\none"}));
        CHECK(error_of([] { is_same_entry(L"C:\\None", L"C:\\None"); }) ==
              file_error_text("equivalent", ERROR_FILE_NOT_FOUND, {L"C:\\None", L"C:\\None"}));
    }
}

TEST_CASE("entries are told apart by all 128 bits and by 64 where the system has no more") {
    write_file(L"C:\\a.txt", "x");
    write_file(L"C:\\b.txt", "x");
    REQUIRE(CreateHardLinkW(L"C:\\hard.txt", L"C:\\a.txt", nullptr) != FALSE);
    {
        const InterceptedCall narrow("GetFileInformationByHandleEx", no_wide_identity);
        CHECK(is_same_entry(L"C:\\a.txt", L"C:\\hard.txt"));
        CHECK_FALSE(is_same_entry(L"C:\\a.txt", L"C:\\b.txt"));
        const InterceptedCall none("GetFileInformationByHandle", no_narrow_identity);
        CHECK(error_of([] { is_same_entry(L"C:\\a.txt", L"C:\\b.txt"); }) ==
              file_error_text("equivalent", ERROR_GEN_FAILURE, {L"C:\\a.txt", L"C:\\b.txt"}));
    }
    const InterceptedCall wide("GetFileInformationByHandleEx", identity_with_upper_half);
    const InterceptedCall same("GetFileInformationByHandle", same_narrow_identity);
    g_upper_halves = {7, 7};
    CHECK(is_same_entry(L"C:\\a.txt", L"C:\\b.txt"));
    g_upper_halves = {7, 8};
    CHECK_FALSE(is_same_entry(L"C:\\a.txt", L"C:\\b.txt"));
}

TEST_CASE("folders are made with all missing parents and an existing one is fine") {
    create_folders(L"C:\\New\\a b\\d\u00E9j\u00E0\\deep");
    CHECK((attributes_of(L"C:\\New\\a b\\d\u00E9j\u00E0\\deep") & FILE_ATTRIBUTE_DIRECTORY) != 0);
    create_folders(L"C:\\New\\a b");
    create_folders(L"C:\\New\\trailing\\");
    CHECK(is_there(L"C:\\New\\trailing"));
    make_link(L"C:\\Link", L"C:\\New");
    create_folders(L"C:\\Link");
    create_folders(L"C:\\Link\\through");
    CHECK(is_there(L"C:\\New\\through"));

    write_file(L"C:\\New\\file", "in the way");
    CHECK(error_of([] { create_folders(L"C:\\New\\file"); }) ==
          file_error_text("create_directories", ERROR_ALREADY_EXISTS, {L"C:\\New\\file"}));
    CHECK(error_of([] {
              create_folders(L"C:\\New\\file\\below");
          }).rfind("filesystem error: create_directories: ", 0) == 0);
    CHECK(bytes_of(L"C:\\New\\file") == "in the way");
}

TEST_CASE("a folder is listed with files and folders and links but not itself") {
    write_file(L"C:\\List\\a file.txt", "x", FILE_ATTRIBUTE_HIDDEN);
    write_file(L"C:\\List\\.dot", "x");
    write_file(L"C:\\List\\..two dots", "x");
    write_file(L"C:\\List\\folder\\below.txt", "x");
    write_file(L"C:\\List\\\u65E5\u672C.txt", "x");
    make_link(L"C:\\List\\joined", L"C:\\List\\folder");
    make_folder(L"C:\\Empty");
    CHECK(names_in(L"C:\\List") == std::vector<std::wstring>{L"..two dots", L".dot", L"a file.txt",
                                                             L"folder folder", L"joined folder link",
                                                             L"\u65E5\u672C.txt"});
    CHECK(names_in(L"C:\\Empty").empty());
    CHECK(error_of([] { list_folder(L"C:\\None"); }) ==
          file_error_text("directory_iterator", ERROR_PATH_NOT_FOUND, {L"C:\\None"}));
    CHECK(error_of([] {
              list_folder(L"C:\\List\\.dot");
          }).rfind("filesystem error: directory_iterator: ", 0) == 0);
}

TEST_CASE("a lowered extension begins at the last dot of the name alone") {
    const std::vector<std::pair<std::wstring, std::string>> expected = {{L"Policy.PEM", ".pem"},
                                                                        {L"a.b.Crx", ".crx"},
                                                                        {L".pem", ""},
                                                                        {L"no extension", ""},
                                                                        {L"ends in a dot.", "."},
                                                                        {L"..pem", ".pem"},
                                                                        {L"C:\\x.dir\\name", ""},
                                                                        {L"C:\\x.dir\\.vybf", ""},
                                                                        {L"x.pem ", ".pem "},
                                                                        {L"x.\u00C9", ".\xC9"},
                                                                        {L"x.\uFF50\uFF45\uFF4D", ".???"},
                                                                        {L"x.\u65E5", ".?"},
                                                                        {L"x.\u212Aem", ".?em"},
                                                                        {L".", ""},
                                                                        {L"..", ""}};
    for (const auto& row : expected) {
        CAPTURE(row.first);
        CHECK(lower_extension(row.first) == row.second);
    }
}

TEST_CASE("an error names a path that no encoding can hold") {
    const std::wstring odd = std::wstring(L"C:\\odd ") + wchar_t{0xD800} + L"name";
    const FileError error("copy_file", ERROR_FILE_NOT_FOUND, odd, L"C:\\\u65E5");
    const std::string text = error.what();
    CHECK(text.rfind("filesystem error: copy_file: ", 0) == 0);
    CHECK(text.substr(text.find(" [")) == " [C:\\odd \xEF\xBF\xBDname] [C:\\\xE6\x97\xA5]");
    CHECK(error.code() == ERROR_FILE_NOT_FOUND);
    CHECK(error_of([&] { copy_file_over(odd, L"C:\\to"); }).rfind("filesystem error: copy_file: ", 0) == 0);
    CHECK(error_of([&] { list_folder(odd); }).rfind("filesystem error: directory_iterator: ", 0) == 0);
}

TEST_CASE("every error text of the system fits on one line") {
    for (DWORD number = 0; number < 20000; ++number) {
        const std::string text = system_error_text(number);
        const bool is_one_line =
            text.find_first_of("\r\n\t") == std::string::npos && !text.empty() && text.back() != ' ';
        if (!is_one_line) {
            FAIL_CHECK(number << ": " << text);
        }
    }
    CHECK(system_error_text(0x1FFFFFF) == "error 33554431");
}
