#include <doctest/doctest.h>
#include <string>
#include <vector>

#include <windows.h>

#include "common/files.h"
#include "common/pending_operations.h"
#include "file_error_text.h"
#include "intercepted_call.h"
#include "readable.h"
#include "started_program.h"
#include "test_files.h"

namespace {

constexpr DWORD odd_attributes = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;

BOOL WINAPI deletion_denied(HANDLE file, FILE_INFO_BY_HANDLE_CLASS request, LPVOID information, DWORD size) {
    if (request != FileBasicInfo) {
        SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
    }
    return real_function<decltype(SetFileInformationByHandle)>("SetFileInformationByHandle")(
        file, request, information, size);
}

BOOL WINAPI refused_move(LPCWSTR /*from*/, LPCWSTR /*to*/, DWORD /*flags*/) {
    return FALSE;
}

} // namespace

TEST_CASE("a tree goes with everything in it and a missing one is fine") {
    write_file(L"C:\\tree\\a.txt", "x", odd_attributes);
    write_file(L"C:\\tree\\deep\\er\\b.txt", "x", FILE_ATTRIBUTE_READONLY);
    write_file(L"C:\\tree\\\u65E5\u672C\\c .txt", "x");
    make_folder(L"C:\\tree\\empty");
    REQUIRE(SetFileAttributesW(L"C:\\tree\\deep", FILE_ATTRIBUTE_READONLY) != FALSE);
    REQUIRE(SetFileAttributesW(L"C:\\tree\\empty", FILE_ATTRIBUTE_READONLY) != FALSE);
    remove_tree(L"C:\\tree");
    CHECK_FALSE(is_there(L"C:\\tree"));
    remove_tree(L"C:\\tree");
    remove_tree(L"C:\\none\\at\\all");

    write_file(L"C:\\single.txt", "x", FILE_ATTRIBUTE_READONLY);
    remove_tree(L"C:\\single.txt");
    CHECK_FALSE(is_there(L"C:\\single.txt"));
}

TEST_CASE("what is in use or runs stays as it was and the rest of the tree goes all the same") {
    {
        write_file(L"C:\\tree\\a.txt", "x");
        write_file(L"C:\\tree\\m\\used.txt", "in use", FILE_ATTRIBUTE_READONLY);
        write_file(L"C:\\tree\\m\\z.txt", "x");
        write_file(L"C:\\tree\\z\\z.txt", "x");
        OwnedFile in_use = lock_file(L"C:\\tree\\m\\used.txt");
        const std::string error = error_of([] { remove_tree(L"C:\\tree"); });
        CHECK(error == file_error_text("remove_all", ERROR_SHARING_VIOLATION, {L"C:\\tree\\m\\used.txt"}));
        CHECK(paths_below(L"C:\\tree") == std::vector<std::wstring>{L"m\\", L"m\\used.txt"});
        CHECK((attributes_of(L"C:\\tree\\m\\used.txt") & FILE_ATTRIBUTE_READONLY) != 0);

        in_use.reset();
        // The same where the system denies it twice, as Windows does for a program that runs.
        const InterceptedCall denied("SetFileInformationByHandle", deletion_denied);
        CHECK(error_of([] { remove_tree(L"C:\\tree"); }) ==
              file_error_text("remove_all", ERROR_ACCESS_DENIED, {L"C:\\tree\\m\\used.txt"}));
        CHECK((attributes_of(L"C:\\tree\\m\\used.txt") & FILE_ATTRIBUTE_READONLY) != 0);
    }
    {
        copy_file(path_from_environment(L"ORVANTA_BROWSER"), L"C:\\tree\\running.exe");
        write_file(L"C:\\tree\\x.txt", "x");
        const StartedProgram running(L"C:\\tree\\running.exe", L"--stay");
        CHECK(error_of([] { remove_tree(L"C:\\tree"); }).rfind("filesystem error: remove_all: ", 0) == 0);
        CHECK(paths_below(L"C:\\tree") == std::vector<std::wstring>{L"running.exe"});
        CHECK(running.is_running());
    }
}

TEST_CASE("a removal never goes through a link") {
    write_file(L"C:\\elsewhere\\deep\\precious.txt", "precious");
    write_file(L"C:\\tree\\sub\\x.txt", "x");
    write_file(L"C:\\tree\\z.txt", "x");
    make_link(L"C:\\tree\\link", L"C:\\elsewhere");
    make_link(L"C:\\tree\\sub\\link", L"C:\\elsewhere\\deep");
    // Wine cannot take such a link away, which is an error; Windows can.
    CHECK(error_of([] { remove_tree(L"C:\\tree"); }).rfind("filesystem error: remove_all: ", 0) == 0);
    CHECK(paths_below(L"C:\\tree") == std::vector<std::wstring>{L"link\\", L"sub\\", L"sub\\link\\"});
    make_link(L"C:\\root link", L"C:\\elsewhere");
    error_of([] { remove_tree(L"C:\\root link"); });
    CHECK(bytes_of(L"C:\\elsewhere\\deep\\precious.txt") == "precious");

    schedule_removal_at_reboot(L"C:\\tree");
    // Nor does the walk begin in one.
    schedule_removal_at_reboot(L"C:\\root link");
    CHECK(pending_deletions().empty());
}

TEST_CASE("every file below a folder is handed over for deletion at the next start") {
    write_file(L"C:\\tree\\a b.txt", "x", FILE_ATTRIBUTE_READONLY);
    write_file(L"C:\\tree\\deep\\er\\\u65E5.txt", "x", FILE_ATTRIBUTE_HIDDEN);
    write_file(L"C:\\tree\\deep\\used.txt", "x");
    make_folder(L"C:\\tree\\empty");
    const OwnedFile in_use = lock_file(L"C:\\tree\\deep\\used.txt");
    const DWORD hidden = attributes_of(L"C:\\tree\\deep\\er\\\u65E5.txt");
    schedule_removal_at_reboot(L"C:\\tree");
    CHECK(pending_deletions() == std::vector<std::wstring>{L"C:\\tree\\a b.txt",
                                                           L"C:\\tree\\deep\\er\\\u65E5.txt",
                                                           L"C:\\tree\\deep\\used.txt"});
    CHECK(paths_below(L"C:\\tree").size() == 6);
    // The next start would not delete it while it is read-only.
    CHECK((attributes_of(L"C:\\tree\\a b.txt") & FILE_ATTRIBUTE_READONLY) == 0);
    CHECK((attributes_of(L"C:\\tree\\deep\\er\\\u65E5.txt") & FILE_ATTRIBUTE_HIDDEN) ==
          (hidden & FILE_ATTRIBUTE_HIDDEN));
    schedule_removal_at_reboot(L"C:\\none");
    CHECK(pending_deletions().size() == 3);

    // What the system does not take stays as it was.
    write_file(L"C:\\other\\a.txt", "x", FILE_ATTRIBUTE_READONLY);
    const InterceptedCall refused("MoveFileExW", refused_move);
    schedule_removal_at_reboot(L"C:\\other");
    CHECK((attributes_of(L"C:\\other\\a.txt") & FILE_ATTRIBUTE_READONLY) != 0);
}
