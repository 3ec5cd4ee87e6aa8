#include <doctest/doctest.h>
#include <string>

#include <windows.h>

#include "console/install.h"
#include "console_installation.h"
#include "file_error_text.h"
#include "read_task.h"
#include "test_files.h"
#include "test_registry.h"
#include "watched_places.h"

namespace {

const std::wstring source = L"C:\\Media";

} // namespace

TEST_CASE("without Fortwright nothing but the failure is reported and nothing but the folder made") {
    copy_file(sample_products() + L"\\WebView2Loader.dll", source + L"\\WebView2Loader.dll");
    for (const std::wstring& from : {source, std::wstring(L"C:\\None")}) {
        const ConsoleInstallation installation = install_console(from);
        CHECK_FALSE(installation.result);
        const DWORD error = from == source ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
        CHECK(installation.reports == Reports{copy_failure(L"Fortwright.exe", error, from)});
    }
    CHECK(is_there(console_dir));
    CHECK(paths_below(console_dir).empty());
    CHECK_FALSE(is_there(watched_shortcut()));
    CHECK(read_task_calls().empty());
    CHECK_FALSE(key_is_there(console_uninstall_key));
}

TEST_CASE("the console's own folder as its source is an error and the files stay whole") {
    REQUIRE(install_console(sample_products()).result);
    const std::string program = bytes_of(console_dir + L"\\Fortwright.exe");
    const Paths before = paths_below(console_dir);
    for (const std::wstring& from : {console_dir, std::wstring(L"c:\\PROGRAM files\\.\\brackenfold\\fwc")}) {
        const ConsoleInstallation again = install_console(from);
        CHECK_FALSE(again.result);
        CHECK(again.reports == Reports{copy_failure(L"Fortwright.exe", ERROR_FILE_EXISTS, from)});
    }
    const bool is_whole = bytes_of(console_dir + L"\\Fortwright.exe") == program;
    CHECK(is_whole);
    CHECK(paths_below(console_dir) == before);
}

TEST_CASE("a program that is in use is fatal") {
    write_file(console_dir + L"\\Fortwright.exe", "in use");
    const OwnedFile in_use = lock_file(console_dir + L"\\Fortwright.exe");
    const ConsoleInstallation installation = install_console(sample_products());
    CHECK_FALSE(installation.result);
    CHECK(installation.reports ==
          Reports{copy_failure(L"Fortwright.exe", ERROR_SHARING_VIOLATION, sample_products())});
    CHECK(paths_below(console_dir) == Paths{L"Fortwright.exe"});
    CHECK_FALSE(key_is_there(console_uninstall_key));
}

TEST_CASE("a folder that cannot be made is fatal") {
    write_file(console_dir, "a file in the way");
    const ConsoleInstallation installation = install_console(sample_products());
    CHECK_FALSE(installation.result);
    CHECK(installation.reports ==
          Reports{{"Failed to create FWC directory: " +
                       file_error_text("create_directories", ERROR_ALREADY_EXISTS, {console_dir}),
                   false}});
    CHECK(bytes_of(console_dir) == "a file in the way");
    CHECK_FALSE(key_is_there(console_uninstall_key));
}

TEST_CASE("an updater that cannot be copied is not reported") {
    make_folder(console_dir + L"\\updater.exe\\in the way");
    const ConsoleInstallation installation = install_console(sample_products());
    CHECK(installation.result);
    CHECK(installation.reports == console_all_done);
    CHECK(is_there(console_dir + L"\\updater.exe\\in the way"));
}
