// What a deployment reports when it cannot be done, or not in full.
#include <algorithm>
#include <doctest/doctest.h>
#include <stdexcept>
#include <string>

#include <windows.h>

#include "deployed.h"
#include "file_error_text.h"
#include "intercepted_call.h"
#include "linkward/deployment.h"
#include "test_files.h"

namespace {

std::string failed_copy(const std::string& name, DWORD error, const std::wstring& from,
                        const std::wstring& to) {
    return "Warning: failed to copy " + name + " (" + file_error_text("copy_file", error, {from, to}) + ")";
}

BOOL WINAPI unreadable_entry(HANDLE /*search*/, LPWIN32_FIND_DATAW /*data*/) {
    SetLastError(ERROR_READ_FAULT);
    return FALSE;
}

} // namespace

TEST_CASE("a missing source ends the deployment after the folders were made") {
    for (const wchar_t* missing : {L"C:\\None", L"C:\\None\\at all", L"Q:\\", L""}) {
        CAPTURE(missing);
        const Deployment deployment = deploy(missing);
        CHECK_FALSE(deployment.result);
        REQUIRE(deployment.reports.size() == 1);
        CHECK_FALSE(deployment.reports[0].ok);
        CHECK(deployment.reports[0].text.rfind("File copy failed: filesystem error: equivalent: ", 0) == 0);
    }
    CHECK(deploy(L"C:\\None").reports ==
          Reports{{"File copy failed: " +
                       file_error_text("equivalent", ERROR_FILE_NOT_FOUND, {L"C:\\None", install_dir}),
                   false}});
    CHECK(paths_below(L"C:\\Program Files\\Brackenfold") == Paths{L"Veyra Linkward\\"});
    CHECK(paths_below(data_dir) == Paths{L"logs\\"});
}

TEST_CASE("a source that cannot be read to its end breaks the deployment off") {
    write_file(source + L"\\a.txt", "x");
    Deployment deployment = deploy(source + L"\\a.txt");
    CHECK_FALSE(deployment.result);
    REQUIRE(deployment.reports.size() == 1);
    CHECK_FALSE(deployment.reports[0].ok);
    CHECK(deployment.reports[0].text.rfind("File copy failed: filesystem error: directory_iterator: ", 0) ==
          0);
    CHECK(paths_below(install_dir) == Paths{L"extensions\\"});

    const InterceptedCall broken("FindNextFileW", unreadable_entry);
    deployment = deploy();
    CHECK_FALSE(deployment.result);
    CHECK(deployment.reports ==
          Reports{{"File copy failed: " + file_error_text("directory_iterator", ERROR_READ_FAULT, {source}),
                   false}});
}

TEST_CASE("an entry that cannot be copied is a warning and the rest is deployed") {
    for (const wchar_t* name : {L"a.txt", L"locked.txt", L"target in use.txt", L"\u65E5 \u00E9.txt", L"z.txt",
                                L"sub\\a.txt", L"sub\\m.txt"}) {
        write_file(source + L"\\" + name, "new");
    }
    write_file(install_dir + L"\\target in use.txt", "old");
    // A folder in the way of a file, and a file in the way of a folder.
    make_folder(install_dir + L"\\folder");
    write_file(source + L"\\folder", "x");
    write_file(install_dir + L"\\tree", "x");
    make_folder(source + L"\\tree");
    const OwnedFile locked = lock_file(source + L"\\locked.txt");
    const OwnedFile foreign_name = lock_file(source + L"\\\u65E5 \u00E9.txt");
    const OwnedFile inside = lock_file(source + L"\\sub\\m.txt");
    const OwnedFile target = lock_file(install_dir + L"\\target in use.txt");

    Deployment deployment = deploy();

    CHECK(deployment.result);
    REQUIRE(deployment.reports.size() == 7);
    CHECK(deployment.reports.back() == Report{"Deployed 2 files", true});
    const auto warned = [&](const std::string& text) {
        const Report report = {text, false};
        return std::count(deployment.reports.begin(), deployment.reports.end(), report) == 1;
    };
    CHECK(warned(failed_copy("locked.txt", ERROR_SHARING_VIOLATION, source + L"\\locked.txt",
                             install_dir + L"\\locked.txt")));
    CHECK(warned(failed_copy("target in use.txt", ERROR_SHARING_VIOLATION, source + L"\\target in use.txt",
                             install_dir + L"\\target in use.txt")));
    // The name in the ANSI code page, which loses a character; the paths in UTF-8.
    CHECK(warned(failed_copy("? \xE9.txt", ERROR_SHARING_VIOLATION, source + L"\\\u65E5 \u00E9.txt",
                             install_dir + L"\\\u65E5 \u00E9.txt")));
    CHECK(warned(failed_copy("sub", ERROR_SHARING_VIOLATION, source + L"\\sub\\m.txt",
                             install_dir + L"\\sub\\m.txt")));
    CHECK(warned("Warning: failed to copy tree (" +
                 file_error_text("create_directories", ERROR_ALREADY_EXISTS, {install_dir + L"\\tree"}) +
                 ")"));
    CHECK(bytes_of(install_dir + L"\\z.txt") == "new");
    check_installer_copy();
}

TEST_CASE("a bloom filter that cannot be copied is a warning of its own") {
    write_file(source + L"\\a.vybf", "x");
    write_file(source + L"\\m.vybf", "x");
    write_file(source + L"\\z.vybf", "x");
    const OwnedFile locked = lock_file(source + L"\\m.vybf");
    const Deployment deployment = deploy();
    CHECK(deployment.result);
    REQUIRE(deployment.reports.size() == 4);
    const Report warning = {"Warning: bloom filter deploy failed: " +
                                file_error_text("copy_file", ERROR_SHARING_VIOLATION,
                                                {source + L"\\m.vybf", data_dir + L"\\m.vybf"}),
                            false};
    CHECK(std::count(deployment.reports.begin(), deployment.reports.end(), warning) == 1);
    CHECK(std::count(deployment.reports.begin(), deployment.reports.end(), bloom_report) == 2);
    CHECK(deployment.reports.back() == Report{"Deployed 0 files", true});
    CHECK(paths_below(data_dir) == Paths{L"a.vybf", L"logs\\", L"z.vybf"});
}

TEST_CASE("a report of a bloom filter that fails ends the deployment but not one from the install folder") {
    write_file(source + L"\\a.vybf", "x");
    write_file(install_dir + L"\\b.vybf", "x");
    RecordedReports reports;
    const auto failing = [&](const std::string& text, bool ok) {
        reports.progress(text, ok);
        if (text == bloom_report.text) {
            throw std::runtime_error("nobody listens");
        }
    };
    CHECK_FALSE(deploy_linkward_files(source, failing));
    CHECK(reports.all == Reports{bloom_report, {"File copy failed: nobody listens", false}});
    reports.all.clear();
    CHECK(deploy_linkward_files(install_dir, failing));
    CHECK(reports.all == Reports{{"Files already in install directory", true}, bloom_report});
}

TEST_CASE("a folder that cannot be made ends the deployment at once") {
    write_file(source + L"\\a.txt", "x");
    write_file(source + L"\\a.vybf", "x");
    make_folder(install_dir);
    write_file(install_dir + L"\\extensions", "in the way");
    Deployment deployment = deploy();
    CHECK_FALSE(deployment.result);
    CHECK(deployment.reports ==
          Reports{{"File copy failed: " + file_error_text("create_directories", ERROR_ALREADY_EXISTS,
                                                          {install_dir + L"\\extensions"}),
                   false}});
    CHECK(paths_below(install_dir) == Paths{L"extensions"});
    CHECK(paths_below(data_dir) == Paths{L"logs\\"});

    write_file(L"C:\\ProgramData\\Brackenfold\\Veyra Linkward\\logs.txt", "x");
    REQUIRE(RemoveDirectoryW((data_dir + L"\\logs").c_str()) != FALSE);
    write_file(data_dir + L"\\logs", "in the way");
    deployment = deploy();
    CHECK_FALSE(deployment.result);
    CHECK(deployment.reports ==
          Reports{{"File copy failed: " +
                       file_error_text("create_directories", ERROR_ALREADY_EXISTS, {data_dir + L"\\logs"}),
                   false}});
}
