#include "console/install.h"

#include <doctest/doctest.h>
#include <optional>
#include <string>
#include <vector>
#include <windows.h>

#include <objbase.h>
#include <shlobj.h>

#include "common/install_source.h"
#include "console/location.h"
#include "file_error_text.h"
#include "intercepted_call.h"
#include "read_shortcut.h"
#include "read_task.h"
#include "recorded_reports.h"
#include "refused_calls.h"
#include "test_files.h"
#include "test_registry.h"
#include "watched_places.h"

namespace {

using Paths = std::vector<std::wstring>;

const std::wstring install_dir = L"C:\\Program Files\\Brackenfold\\FWC";
const std::wstring uninstall_key =
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\FortwrightConsole";
const std::wstring source = L"C:\\Media";

const Report program_deployed = {"Deployed Fortwright.exe", true};
const Report loader_deployed = {"Deployed WebView2Loader.dll", true};
const Report shortcut_made = {"Created desktop shortcut", true};
const Report shortcut_missing = {"Warning: could not create desktop shortcut", false};
const Report scheduled = {"Scheduled weekly update", true};
const Report listed = {"Registered in Add/Remove Programs", true};
const Report complete = {"FWC installation complete", true};

const Reports all_done = {program_deployed, loader_deployed, shortcut_made, scheduled, listed, complete};

struct Installation {
    bool result = false;
    Reports reports;
};

Installation install(const std::wstring& from) {
    g_source_dir = from;
    RecordedReports reports;
    const bool result = install_fwc(reports.progress);
    return {result, reports.all};
}

std::optional<Shortcut> desktop_shortcut() {
    REQUIRE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
    std::optional<Shortcut> shortcut = read_shortcut(watched_shortcut());
    CoUninitialize();
    return shortcut;
}

std::string copy_failure(const std::string& name, DWORD error, const std::wstring& from,
                         const std::wstring& to) {
    return "Failed to copy " + name + ": " + file_error_text("copy_file", error, {from, to});
}

/// Whether COM is initialised on this thread.
bool has_com() {
    IUnknown* object = nullptr;
    const HRESULT result = CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                            reinterpret_cast<void**>(&object));
    if (object != nullptr) {
        object->Release();
    }
    return result != CO_E_NOTINITIALIZED;
}

HRESULT WINAPI no_object(REFCLSID /*class_id*/, LPUNKNOWN /*outer*/, DWORD /*context*/,
                         REFIID /*interface_id*/, LPVOID* object) {
    *object = nullptr;
    return REGDB_E_CLASSNOTREG;
}

} // namespace

TEST_CASE("the console is installed with files and shortcut and task and entry") {
    CHECK(fwc_install_dir() == install_dir);
    const Installation installation = install(sample_products());
    CHECK(installation.result);
    CHECK(installation.reports == all_done);

    CHECK(paths_below(L"C:\\Program Files\\Brackenfold") ==
          Paths{L"FWC\\", L"FWC\\Fortwright.exe", L"FWC\\updater.exe", L"FWC\\WebView2Loader.dll"});
    for (const wchar_t* name : {L"\\Fortwright.exe", L"\\WebView2Loader.dll"}) {
        CAPTURE(name);
        CHECK(have_same_bytes(install_dir + name, sample_products() + name));
    }
    CHECK(have_same_bytes(install_dir + L"\\updater.exe", test_program()));
    const std::optional<Shortcut> shortcut = desktop_shortcut();
    REQUIRE(shortcut.has_value());
    CHECK(shortcut->target == install_dir + L"\\Fortwright.exe");
    CHECK(shortcut->arguments == L"");
    CHECK(shortcut->description == L"Fortwright Console");
    CHECK(shortcut->icon == install_dir + L"\\Fortwright.exe");
    CHECK(shortcut->icon_index == 0);
    CHECK(shortcut->working_folder == install_dir);
    CHECK(read_task_calls() ==
          Paths{L"schtasks /Create /F /TN \"Brackenfold\\FWC Updater\" /TR \"\\\"C:\\Program "
                L"Files\\Brackenfold\\FWC\\updater.exe\\\"\" /SC WEEKLY /D SUN /ST 03:00 /RL HIGHEST /RU "
                L"SYSTEM"});
    CHECK(values_of(uninstall_key).size() == 11);
    CHECK_FALSE(has_com());
}

TEST_CASE("a second installation replaces the three files and everything registered") {
    const std::wstring media = copy_of_sample_products();
    REQUIRE(install(media).result);
    write_file(media + L"\\Fortwright.exe", "new program");
    write_file(media + L"\\WebView2Loader.dll", "new loader");
    REQUIRE(SetFileAttributesW((install_dir + L"\\Fortwright.exe").c_str(), FILE_ATTRIBUTE_READONLY) !=
            FALSE);
    write_file(install_dir + L"\\updater.exe", "old updater");
    write_file(watched_shortcut(), "no shortcut");
    set_text(uninstall_key, L"DisplayVersion", L"0.9");
    const Installation again = install(media);
    CHECK(again.result);
    CHECK(again.reports == all_done);
    CHECK(bytes_of(install_dir + L"\\Fortwright.exe") == "new program");
    CHECK(bytes_of(install_dir + L"\\WebView2Loader.dll") == "new loader");
    CHECK(bytes_of(install_dir + L"\\updater.exe").size() > 1000);
    CHECK(desktop_shortcut().has_value());
    CHECK(read_task_calls().size() == 2);
    CHECK(values_of(uninstall_key)[2] == RegistryValue{L"DisplayVersion", REG_SZ, L"1.0.0"});
}

TEST_CASE("without WebView2Loader the console is installed with one failure") {
    copy_file(sample_products() + L"\\Fortwright.exe", source + L"\\Fortwright.exe");
    const Installation installation = install(source);
    CHECK(installation.result);
    const Report failure = {copy_failure("WebView2Loader.dll", ERROR_FILE_NOT_FOUND,
                                         source + L"\\WebView2Loader.dll",
                                         install_dir + L"\\WebView2Loader.dll"),
                            false};
    CHECK(installation.reports ==
          Reports{program_deployed, failure, shortcut_made, scheduled, listed, complete});
    CHECK(paths_below(install_dir) == Paths{L"Fortwright.exe", L"updater.exe"});
}

TEST_CASE("without Fortwright nothing but the failure is reported and nothing but the folder made") {
    copy_file(sample_products() + L"\\WebView2Loader.dll", source + L"\\WebView2Loader.dll");
    for (const std::wstring& from : {source, std::wstring(L"C:\\None")}) {
        const Installation installation = install(from);
        CHECK_FALSE(installation.result);
        const DWORD error = from == source ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
        CHECK(installation.reports ==
              Reports{{copy_failure("Fortwright.exe", error, from + L"\\Fortwright.exe",
                                    install_dir + L"\\Fortwright.exe"),
                       false}});
    }
    CHECK(is_there(install_dir));
    CHECK(paths_below(install_dir).empty());
    CHECK_FALSE(is_there(watched_shortcut()));
    CHECK(read_task_calls().empty());
    CHECK_FALSE(key_is_there(uninstall_key));
}

TEST_CASE("the console's own folder as its source is an error and the files stay whole") {
    REQUIRE(install(sample_products()).result);
    const std::string program = bytes_of(install_dir + L"\\Fortwright.exe");
    const Paths before = paths_below(install_dir);
    for (const std::wstring& from : {install_dir, std::wstring(L"c:\\PROGRAM files\\.\\brackenfold\\fwc")}) {
        const Installation again = install(from);
        CHECK_FALSE(again.result);
        CHECK(again.reports ==
              Reports{{copy_failure("Fortwright.exe", ERROR_FILE_EXISTS, from + L"\\Fortwright.exe",
                                    install_dir + L"\\Fortwright.exe"),
                       false}});
    }
    const bool is_whole = bytes_of(install_dir + L"\\Fortwright.exe") == program;
    CHECK(is_whole);
    CHECK(paths_below(install_dir) == before);
}

TEST_CASE("a program in use or a folder that cannot be made is fatal and a lost updater not reported") {
    {
        write_file(install_dir + L"\\Fortwright.exe", "in use");
        {
            const OwnedFile in_use = lock_file(install_dir + L"\\Fortwright.exe");
            const Installation installation = install(sample_products());
            CHECK_FALSE(installation.result);
            CHECK(installation.reports == Reports{{copy_failure("Fortwright.exe", ERROR_SHARING_VIOLATION,
                                                                sample_products() + L"\\Fortwright.exe",
                                                                install_dir + L"\\Fortwright.exe"),
                                                   false}});
        }
        REQUIRE(DeleteFileW((install_dir + L"\\Fortwright.exe").c_str()) != FALSE);
        REQUIRE(RemoveDirectoryW(install_dir.c_str()) != FALSE);
        write_file(install_dir, "a file in the way");
        const Installation installation = install(sample_products());
        CHECK_FALSE(installation.result);
        CHECK(installation.reports ==
              Reports{{"Failed to create FWC directory: " +
                           file_error_text("create_directories", ERROR_ALREADY_EXISTS, {install_dir}),
                       false}});
        CHECK(bytes_of(install_dir) == "a file in the way");
        CHECK_FALSE(key_is_there(uninstall_key));
    }
    {
        REQUIRE(DeleteFileW(install_dir.c_str()) != FALSE);
        make_folder(install_dir + L"\\updater.exe\\in the way");
        const Installation installation = install(sample_products());
        CHECK(installation.result);
        CHECK(installation.reports == all_done);
    }
}

TEST_CASE("a shortcut that cannot be made is a warning and COM is left as it was") {
    const Reports with_warning = {program_deployed, loader_deployed, shortcut_missing,
                                  scheduled,        listed,          complete};
    {
        const InterceptedCall missing("SHGetFolderPathW", no_desktop_folder);
        const Installation installation = install(sample_products());
        CHECK(installation.result);
        CHECK(installation.reports == with_warning);
    }
    CHECK_FALSE(is_there(watched_shortcut()));
    {
        const InterceptedCall missing("CoCreateInstance", no_object);
        CHECK(install(sample_products()).reports == with_warning);
    }
    make_folder(watched_shortcut());
    CHECK(install(sample_products()).reports == with_warning);
    CHECK_FALSE(has_com());
    REQUIRE(RemoveDirectoryW(watched_shortcut().c_str()) != FALSE);

    // A thread that has COM already, of either kind, keeps it.
    for (const DWORD kind : {DWORD{COINIT_MULTITHREADED}, DWORD{COINIT_APARTMENTTHREADED}}) {
        REQUIRE(SUCCEEDED(CoInitializeEx(nullptr, kind)));
        CHECK(install(sample_products()).reports == all_done);
        CHECK(has_com());
        CoUninitialize();
        CHECK_FALSE(has_com());
    }
}

TEST_CASE("a task scheduler that fails is not noticed and a command that cannot start not reported") {
    write_file(L"C:\\schtasks.exit", "1");
    const Installation installation = install(sample_products());
    CHECK(installation.result);
    CHECK(installation.reports == all_done);
    CHECK(read_task_calls().size() == 1);

    const InterceptedCall no_command("CreateProcessW", no_process);
    const Installation without_task = install(sample_products());
    CHECK(without_task.result);
    CHECK(without_task.reports ==
          Reports{program_deployed, loader_deployed, shortcut_made, listed, complete});
    CHECK(read_task_calls().size() == 1);
}

TEST_CASE("without Program Files the console goes below the current folder") {
    make_folder(L"C:\\Current");
    REQUIRE(SetCurrentDirectoryW(L"C:\\Current") != FALSE);
    const InterceptedCall failing("SHGetFolderPathW", no_shell_folder);
    CHECK(fwc_install_dir() == L"Brackenfold\\FWC");
    CHECK(install(sample_products()).result);
    CHECK(is_there(L"C:\\Current\\Brackenfold\\FWC\\Fortwright.exe"));
}
