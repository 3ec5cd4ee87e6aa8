#include <doctest/doctest.h>
#include <optional>
#include <string>

#include <windows.h>
#include <objbase.h>
#include <shlobj.h>

#include "console/install.h"
#include "console/product.h"
#include "console_installation.h"
#include "intercepted_call.h"
#include "read_shortcut.h"
#include "read_task.h"
#include "refused_calls.h"
#include "test_files.h"
#include "test_registry.h"
#include "watched_places.h"

namespace {

const std::wstring source = L"C:\\Media";
const Report shortcut_missing = {"Warning: could not create desktop shortcut", false};

std::optional<Shortcut> desktop_shortcut() {
    REQUIRE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
    std::optional<Shortcut> shortcut = read_shortcut(watched_shortcut());
    CoUninitialize();
    return shortcut;
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
    CHECK(fwc_install_dir() == console_dir);
    const ConsoleInstallation installation = install_console(sample_products());
    CHECK(installation.result);
    CHECK(installation.reports == console_all_done);

    CHECK(paths_below(L"C:\\Program Files\\Brackenfold") ==
          Paths{L"FWC\\", L"FWC\\Fortwright.exe", L"FWC\\updater.exe", L"FWC\\WebView2Loader.dll"});
    for (const wchar_t* name : {L"\\Fortwright.exe", L"\\WebView2Loader.dll"}) {
        CAPTURE(name);
        CHECK(have_same_bytes(console_dir + name, sample_products() + name));
    }
    CHECK(have_same_bytes(console_dir + L"\\updater.exe", test_program()));
    const std::optional<Shortcut> shortcut = desktop_shortcut();
    REQUIRE(shortcut.has_value());
    CHECK(shortcut->target == console_dir + L"\\Fortwright.exe");
    CHECK(shortcut->arguments == L"");
    CHECK(shortcut->description == L"Fortwright Console");
    CHECK(shortcut->icon == console_dir + L"\\Fortwright.exe");
    CHECK(shortcut->icon_index == 0);
    CHECK(shortcut->working_folder == console_dir);
    CHECK(read_task_calls() ==
          Paths{L"schtasks /Create /F /TN \"Brackenfold\\FWC Updater\" /TR \"\\\"C:\\Program "
                L"Files\\Brackenfold\\FWC\\updater.exe\\\"\" /SC WEEKLY /D SUN /ST 03:00 /RL HIGHEST /RU "
                L"SYSTEM"});
    CHECK(values_of(console_uninstall_key).size() == 11);
    CHECK_FALSE(has_com());
}

TEST_CASE("a second installation replaces the three files and everything registered") {
    const std::wstring media = copy_of_sample_products();
    REQUIRE(install_console(media).result);
    write_file(media + L"\\Fortwright.exe", "new program");
    write_file(media + L"\\WebView2Loader.dll", "new loader");
    REQUIRE(SetFileAttributesW((console_dir + L"\\Fortwright.exe").c_str(), FILE_ATTRIBUTE_READONLY) !=
            FALSE);
    write_file(console_dir + L"\\updater.exe", "old updater");
    write_file(watched_shortcut(), "no shortcut");
    set_text(console_uninstall_key, L"DisplayVersion", L"0.9");
    const ConsoleInstallation again = install_console(media);
    CHECK(again.result);
    CHECK(again.reports == console_all_done);
    CHECK(bytes_of(console_dir + L"\\Fortwright.exe") == "new program");
    CHECK(bytes_of(console_dir + L"\\WebView2Loader.dll") == "new loader");
    CHECK(bytes_of(console_dir + L"\\updater.exe").size() > 1000);
    CHECK(desktop_shortcut().has_value());
    CHECK(read_task_calls().size() == 2);
    CHECK(values_of(console_uninstall_key)[2] == RegistryValue{L"DisplayVersion", REG_SZ, project_version()});
}

TEST_CASE("without WebView2Loader the console is installed with one failure") {
    copy_file(sample_products() + L"\\Fortwright.exe", source + L"\\Fortwright.exe");
    const ConsoleInstallation installation = install_console(source);
    CHECK(installation.result);
    const Report failure = copy_failure(L"WebView2Loader.dll", ERROR_FILE_NOT_FOUND, source);
    CHECK(installation.reports ==
          Reports{program_deployed, failure, shortcut_made, scheduled, console_listed, console_complete});
    CHECK(paths_below(console_dir) == Paths{L"Fortwright.exe", L"updater.exe"});
}

TEST_CASE("a shortcut that cannot be made is a warning and COM is left as it was") {
    const Reports with_warning = {program_deployed, loader_deployed, shortcut_missing,
                                  scheduled,        console_listed,  console_complete};
    {
        const InterceptedCall missing("SHGetFolderPathW", no_desktop_folder);
        const ConsoleInstallation installation = install_console(sample_products());
        CHECK(installation.result);
        CHECK(installation.reports == with_warning);
    }
    CHECK_FALSE(is_there(watched_shortcut()));
    {
        const InterceptedCall missing("CoCreateInstance", no_object);
        CHECK(install_console(sample_products()).reports == with_warning);
    }
    make_folder(watched_shortcut());
    CHECK(install_console(sample_products()).reports == with_warning);
    CHECK_FALSE(has_com());
    REQUIRE(RemoveDirectoryW(watched_shortcut().c_str()) != FALSE);

    // A thread that has COM already, of either kind, keeps it.
    for (const DWORD kind : {DWORD{COINIT_MULTITHREADED}, DWORD{COINIT_APARTMENTTHREADED}}) {
        REQUIRE(SUCCEEDED(CoInitializeEx(nullptr, kind)));
        CHECK(install_console(sample_products()).reports == console_all_done);
        CHECK(has_com());
        CoUninitialize();
        CHECK_FALSE(has_com());
    }
}

TEST_CASE("a task scheduler that fails is not noticed and a command that cannot start not reported") {
    write_file(L"C:\\schtasks.exit", "1");
    const ConsoleInstallation installation = install_console(sample_products());
    CHECK(installation.result);
    CHECK(installation.reports == console_all_done);
    CHECK(read_task_calls().size() == 1);

    const InterceptedCall no_command("CreateProcessW", no_process);
    const ConsoleInstallation without_task = install_console(sample_products());
    CHECK(without_task.result);
    CHECK(without_task.reports ==
          Reports{program_deployed, loader_deployed, shortcut_made, console_listed, console_complete});
    CHECK(read_task_calls().size() == 1);
}

TEST_CASE("without Program Files the console goes below the current folder") {
    make_folder(L"C:\\Current");
    REQUIRE(SetCurrentDirectoryW(L"C:\\Current") != FALSE);
    const InterceptedCall failing("SHGetFolderPathW", no_shell_folder);
    CHECK(fwc_install_dir() == L"Brackenfold\\FWC");
    CHECK(install_console(sample_products()).result);
    CHECK(is_there(L"C:\\Current\\Brackenfold\\FWC\\Fortwright.exe"));
}
