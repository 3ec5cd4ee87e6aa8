#include <doctest/doctest.h>
#include <string>
#include <vector>

#include <windows.h>

#include "base.h"
#include "before_each_case.h"
#include "common/files.h"
#include "file_error_text.h"
#include "intercepted_call.h"
#include "readable.h"
#include "test_files.h"

namespace {

constexpr DWORD odd_attributes = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;

FILETIME time_of(const std::wstring& path) {
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    REQUIRE(GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) != FALSE);
    return data.ftLastWriteTime;
}

void set_time(const std::wstring& path, WORD year) {
    SYSTEMTIME when = {};
    when.wYear = year;
    when.wMonth = 2;
    when.wDay = 3;
    FILETIME time = {};
    REQUIRE(SystemTimeToFileTime(&when, &time) != FALSE);
    const OwnedFile file(
        CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    REQUIRE(SetFileTime(file.get(), nullptr, nullptr, &time) != FALSE);
}

int g_refused_copies = 0; // written by copy_as_windows_does, on the test's thread
const BeforeEachCase start_anew([] { g_refused_copies = 0; });

/// Windows, unlike Wine, does not replace a read-only or hidden target.
BOOL WINAPI copy_as_windows_does(LPCWSTR from, LPCWSTR to, BOOL keep) {
    const DWORD attributes = GetFileAttributesW(to);
    if (keep == FALSE && attributes != INVALID_FILE_ATTRIBUTES && (attributes & odd_attributes) != 0) {
        ++g_refused_copies;
        SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
    }
    return real_function<decltype(CopyFileW)>("CopyFileW")(from, to, keep);
}

BOOL WINAPI replacement_denied(LPCWSTR /*from*/, LPCWSTR to, BOOL keep) {
    SetLastError(keep != FALSE && GetFileAttributesW(to) != INVALID_FILE_ATTRIBUTES ? ERROR_FILE_EXISTS
                                                                                    : ERROR_ACCESS_DENIED);
    return FALSE;
}

// Written by the stand-ins below, on the test's thread.
std::vector<std::wstring> g_copied;
int g_opened = 0;
const BeforeEachCase forget_calls([] {
    g_copied.clear();
    g_opened = 0;
});

BOOL WINAPI noted_copy(LPCWSTR from, LPCWSTR to, BOOL keep) {
    g_copied.emplace_back(to);
    return real_function<decltype(CopyFileW)>("CopyFileW")(from, to, keep);
}

HANDLE WINAPI noted_open(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                         DWORD disposition, DWORD flags, HANDLE model) {
    ++g_opened;
    return real_function<decltype(CreateFileW)>("CreateFileW")(path, access, share, security, disposition,
                                                               flags, model);
}

} // namespace

TEST_CASE("a copied file has the content and time and attributes of its source") {
    write_file(L"C:\\a\\from.bin", std::string("one\r\ntwo\0three", 14), FILE_ATTRIBUTE_NORMAL);
    set_time(L"C:\\a\\from.bin", 2011);
    make_folder(L"C:\\b");
    copy_file_over(L"C:\\a\\from.bin", L"C:\\b\\new.bin");
    CHECK(bytes_of(L"C:\\b\\new.bin") == std::string("one\r\ntwo\0three", 14));

    write_file(L"C:\\b\\old.bin", "something much longer than what comes over it");
    copy_file_over(L"C:\\a\\from.bin", L"C:\\b\\old.bin");
    CHECK(bytes_of(L"C:\\b\\old.bin") == std::string("one\r\ntwo\0three", 14));
    for (const wchar_t* copy : {L"C:\\b\\new.bin", L"C:\\b\\old.bin"}) {
        const FILETIME expected = time_of(L"C:\\a\\from.bin");
        const FILETIME actual = time_of(copy);
        CHECK(CompareFileTime(&expected, &actual) == 0);
    }
    REQUIRE(SetFileAttributesW(L"C:\\a\\from.bin", odd_attributes) != FALSE);
    copy_file_over(L"C:\\a\\from.bin", L"C:\\b\\odd.bin");
    CHECK((attributes_of(L"C:\\b\\odd.bin") & odd_attributes) == attributes_of_copy(odd_attributes));
    // The file that was read-only is no obstacle to the next copy.
    copy_file_over(L"C:\\a\\from.bin", L"C:\\b\\odd.bin");
    write_file(L"C:\\a\\other.bin", "other");
    copy_file_over(L"C:\\a\\other.bin", L"C:\\b\\odd.bin");
    CHECK(bytes_of(L"C:\\b\\odd.bin") == "other");
}

TEST_CASE("a target that the system refuses is replaced when it is read-only or hidden and else kept") {
    {
        write_file(L"C:\\from.txt", "new");
        const InterceptedCall copy("CopyFileW", copy_as_windows_does);
        const std::vector<DWORD> kinds = {FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_HIDDEN,
                                          FILE_ATTRIBUTE_SYSTEM, odd_attributes};
        for (const DWORD attributes : kinds) {
            CAPTURE(attributes);
            const std::wstring target = L"C:\\to" + std::to_wstring(attributes) + L".txt";
            write_file(target, "old", attributes);
            copy_file_over(L"C:\\from.txt", target);
            CHECK(bytes_of(target) == "new");
        }
        CHECK(g_refused_copies > 0);
    }
    const InterceptedCall copy("CopyFileW", replacement_denied);
    for (const DWORD attributes : {DWORD{FILE_ATTRIBUTE_ARCHIVE}, FILE_ATTRIBUTE_ARCHIVE | odd_attributes}) {
        write_file(L"C:\\from.txt", "new");
        write_file(L"C:\\to.txt", "old", attributes);
        const DWORD before = attributes_of(L"C:\\to.txt");
        CHECK(error_of([] { copy_file_over(L"C:\\from.txt", L"C:\\to.txt"); }) ==
              file_error_text("copy_file", ERROR_ACCESS_DENIED, {L"C:\\from.txt", L"C:\\to.txt"}));
        CHECK(bytes_of(L"C:\\to.txt") == "old");
        CHECK(attributes_of(L"C:\\to.txt") == before);
    }
}

TEST_CASE("a file that is not there yet costs one copy and no question") {
    write_file(L"C:\\from.txt", "new");
    const InterceptedCall copy("CopyFileW", noted_copy);
    const InterceptedCall open("CreateFileW", noted_open);
    copy_file_over(L"C:\\from.txt", L"C:\\to.txt");
    CHECK(g_copied == std::vector<std::wstring>{L"C:\\to.txt"});
    CHECK(g_opened == 0);
}

TEST_CASE("a copy that fails names operation and reason and both paths on one line") {
    write_file(L"C:\\x\\file.txt", "content");
    make_folder(L"C:\\x\\folder");
    const auto copy_error = [](const wchar_t* from, const wchar_t* to) {
        return error_of([&] { copy_file_over(from, to); });
    };
    CHECK(copy_error(L"C:\\x\\none", L"C:\\x\\to") ==
          file_error_text("copy_file", ERROR_FILE_NOT_FOUND, {L"C:\\x\\none", L"C:\\x\\to"}));
    CHECK(copy_error(L"C:\\x\\file.txt", L"C:\\none\\to") ==
          file_error_text("copy_file", ERROR_PATH_NOT_FOUND, {L"C:\\x\\file.txt", L"C:\\none\\to"}));
    CHECK(copy_error(L"C:\\x\\file.txt", L"C:\\x\\folder").rfind("filesystem error: copy_file: ", 0) == 0);
    CHECK(copy_error(L"C:\\x\\folder", L"C:\\x\\to").rfind("filesystem error: copy_file: ", 0) == 0);
    CHECK_FALSE(is_there(L"C:\\x\\to"));
    {
        const OwnedFile source_in_use = lock_file(L"C:\\x\\file.txt");
        CHECK(copy_error(L"C:\\x\\file.txt", L"C:\\x\\to") ==
              file_error_text("copy_file", ERROR_SHARING_VIOLATION, {L"C:\\x\\file.txt", L"C:\\x\\to"}));
    }
    write_file(L"C:\\x\\target.txt", "old");
    const OwnedFile target_in_use = lock_file(L"C:\\x\\target.txt");
    CHECK(copy_error(L"C:\\x\\file.txt", L"C:\\x\\target.txt") ==
          file_error_text("copy_file", ERROR_SHARING_VIOLATION, {L"C:\\x\\file.txt", L"C:\\x\\target.txt"}));
}

TEST_CASE("a file is never copied onto itself in whatever spelling and stays whole") {
    write_file(L"C:\\x\\file.txt", "content");
    REQUIRE(CreateHardLinkW(L"C:\\x\\hard.txt", L"C:\\x\\file.txt", nullptr) != FALSE);
    make_link(L"C:\\linked", L"C:\\x");
    for (const wchar_t* same : {L"C:\\x\\file.txt", L"c:\\X\\FILE.TXT", L"C:\\x\\.\\file.txt",
                                L"C:/x/file.txt", L"C:\\x\\hard.txt", L"C:\\linked\\file.txt"}) {
        CAPTURE(same);
        CHECK(error_of([&] { copy_file_over(L"C:\\x\\file.txt", same); }) ==
              file_error_text("copy_file", ERROR_FILE_EXISTS, {L"C:\\x\\file.txt", same}));
    }
    CHECK(bytes_of(L"C:\\x\\file.txt") == "content");
}

TEST_CASE("a folder is copied whole into an existing one and leaves what it does not replace") {
    write_file(L"C:\\from\\a.txt", "a");
    write_file(L"C:\\from\\deep\\er\\b.txt", "b");
    write_file(L"C:\\from\\deep\\hidden.txt", "h", FILE_ATTRIBUTE_HIDDEN);
    make_folder(L"C:\\from\\empty\\too");
    write_file(L"C:\\to\\own.txt", "own");
    write_file(L"C:\\to\\deep\\er\\b.txt", "an older b", FILE_ATTRIBUTE_READONLY);
    copy_folder_over(L"C:\\from", L"C:\\to");
    CHECK(paths_below(L"C:\\to") == std::vector<std::wstring>{L"a.txt", L"deep\\", L"deep\\er\\",
                                                              L"deep\\er\\b.txt", L"deep\\hidden.txt",
                                                              L"empty\\", L"empty\\too\\", L"own.txt"});
    CHECK(bytes_of(L"C:\\to\\deep\\er\\b.txt") == "b");
    CHECK(bytes_of(L"C:\\to\\own.txt") == "own");
    copy_folder_over(L"C:\\from\\", L"C:\\made\\on\\the way");
    CHECK(paths_below(L"C:\\made\\on\\the way") == paths_below(L"C:\\from"));

    write_file(L"C:\\clash\\deep", "a file where a folder is to go");
    CHECK(error_of([] { copy_folder_over(L"C:\\from", L"C:\\clash"); }) ==
          file_error_text("create_directories", ERROR_ALREADY_EXISTS, {L"C:\\clash\\deep"}));
    CHECK(error_of([] {
              copy_folder_over(L"C:\\none", L"C:\\out");
          }).rfind("filesystem error: directory_iterator: ", 0) == 0);
}

TEST_CASE("a folder is not copied into itself however the target is spelled") {
    write_file(L"C:\\from\\a.txt", "a");
    make_folder(L"C:\\from\\sub");
    make_link(L"C:\\linked", L"C:\\from");
    for (const wchar_t* target : {L"C:\\from", L"C:\\FROM\\new", L"C:\\from\\sub\\x\\y", L"C:\\from\\.\\sub",
                                  L"C:\\linked\\new", L"c:/from/sub/"}) {
        CAPTURE(target);
        CHECK(error_of([&] { copy_folder_over(L"C:\\from", target); }) ==
              file_error_text("copy", ERROR_INVALID_PARAMETER, {L"C:\\from", target}));
    }
    CHECK(paths_below(L"C:\\from") == std::vector<std::wstring>{L"a.txt", L"sub\\"});
    // A name that merely begins alike is another folder.
    copy_folder_over(L"C:\\from", L"C:\\from2");
    CHECK(paths_below(L"C:\\from2") == paths_below(L"C:\\from"));
}

TEST_CASE("links in a source are followed but not back up and not into the target") {
    write_file(L"C:\\elsewhere\\note.txt", "linked");
    write_file(L"C:\\from\\a.txt", "a");
    make_link(L"C:\\from\\link", L"C:\\elsewhere");
    copy_folder_over(L"C:\\from", L"C:\\to");
    CHECK(bytes_of(L"C:\\to\\link\\note.txt") == "linked");
    CHECK((attributes_of(L"C:\\to\\link") & FILE_ATTRIBUTE_REPARSE_POINT) == 0);

    make_folder(L"C:\\round\\one\\two");
    make_link(L"C:\\round\\one\\two\\back", L"C:\\round\\one");
    CHECK(error_of([] { copy_folder_over(L"C:\\round", L"C:\\out"); }) ==
          file_error_text("copy", ERROR_CANT_RESOLVE_FILENAME,
                          {L"C:\\round\\one\\two\\back", L"C:\\out\\one\\two\\back"}));
    make_folder(L"C:\\into");
    make_folder(L"C:\\out2");
    make_link(L"C:\\into\\target", L"C:\\out2");
    CHECK(error_of([] { copy_folder_over(L"C:\\into", L"C:\\out2"); }) ==
          file_error_text("copy", ERROR_CANT_RESOLVE_FILENAME, {L"C:\\into\\target", L"C:\\out2\\target"}));
    CHECK(paths_below(L"C:\\out2").empty());
}

TEST_CASE("a link that leads to any folder around the target is refused and leaves nothing behind") {
    write_file(L"C:\\from\\aa\\a.txt", "a");
    make_folder(L"C:\\around\\target");
    write_file(L"C:\\around\\beside.txt", "b");
    make_link(L"C:\\from\\aa\\loop", L"C:\\around");
    const auto refused = [](const std::wstring& to) {
        return file_error_text("copy", ERROR_CANT_RESOLVE_FILENAME,
                               {L"C:\\from\\aa\\loop", to + L"\\aa\\loop"});
    };
    CHECK(error_of([] { copy_folder_over(L"C:\\from", L"C:\\around\\target"); }) ==
          refused(L"C:\\around\\target"));
    CHECK_FALSE(is_there(L"C:\\around\\target\\aa\\loop"));

    // Also when the target is reached through a link of its own, behind which the same folders lie.
    make_link(L"C:\\short", L"C:\\around\\target");
    CHECK(error_of([] { copy_folder_over(L"C:\\from", L"C:\\short\\new"); }) == refused(L"C:\\short\\new"));
    CHECK_FALSE(is_there(L"C:\\around\\target\\new\\aa\\loop"));

    // And when what the link leads to is made only on the way down.
    make_folder(L"C:\\deep from\\one");
    make_folder(L"C:\\deep\\one");
    make_link(L"C:\\deep from\\one\\loop", L"C:\\deep\\one");
    CHECK(error_of([] { copy_folder_over(L"C:\\deep from", L"C:\\deep"); }) ==
          file_error_text("copy", ERROR_CANT_RESOLVE_FILENAME,
                          {L"C:\\deep from\\one\\loop", L"C:\\deep\\one\\loop"}));
    CHECK(paths_below(L"C:\\deep") == std::vector<std::wstring>{L"one\\"});
}

TEST_CASE("a link in the target that leads back into the source is refused") {
    write_file(L"C:\\from\\sub\\a.txt", "a");
    make_folder(L"C:\\from\\sub\\deep");
    make_folder(L"C:\\to");
    make_link(L"C:\\to\\sub", L"C:\\from\\sub\\deep");
    CHECK(error_of([] { copy_folder_over(L"C:\\from", L"C:\\to"); }) ==
          file_error_text("copy", ERROR_CANT_RESOLVE_FILENAME, {L"C:\\from\\sub", L"C:\\to\\sub"}));
    CHECK(paths_below(L"C:\\from\\sub") == std::vector<std::wstring>{L"a.txt", L"deep\\"});
}

TEST_CASE("paths as long as the system takes are copied") {
    std::wstring folder = L"C:\\long";
    while (folder.size() < 200) {
        folder += L"\\a folder with a long name";
    }
    const std::wstring longest = folder + L"\\" + std::wstring(259 - folder.size() - 1, L'n');
    REQUIRE(longest.size() == 259);
    write_file(longest, "far down");
    copy_folder_over(L"C:\\long", L"C:\\copy");
    CHECK(bytes_of(L"C:\\copy" + longest.substr(7)) == "far down");
}
