#include "linkward/deployment.h"

#include <doctest/doctest.h>
#include <string>
#include <vector>

#include <windows.h>

#include "deployed.h"
#include "file_error_text.h"
#include "intercepted_call.h"
#include "linkward/locations.h"
#include "refused_calls.h"
#include "started_program.h"
#include "test_files.h"

namespace {

/// The last part of the running program's path.
std::wstring own_name() {
    return test_program().substr(test_program().find_last_of(L'\\') + 1);
}

} // namespace

TEST_CASE("the product lies below Program Files and its data on drive C") {
    CHECK(linkward_install_dir() == install_dir);
    CHECK(linkward_programdata_dir() == data_dir);
    CHECK(linkward_log_dir() == data_dir + L"\\logs");
    CHECK(linkward_extension_dir() == install_dir + L"\\extensions");
    CHECK(linkward_installer_copy() == install_dir + L"\\VeyraLinkwardInstaller.exe");
    CHECK(linkward_service_program() == install_dir + L"\\VeyraLinkward.exe");
    CHECK(linkward_native_host_program() == install_dir + L"\\VeyraLinkwardCommunicator.exe");
    const InterceptedCall failing("SHGetFolderPathW", no_shell_folder);
    CHECK(linkward_install_dir() == L"Brackenfold\\Veyra Linkward");
    CHECK(linkward_programdata_dir() == data_dir);
}

TEST_CASE("the sample products land in their places with nothing else") {
    const Deployment deployment = deploy(sample_products());
    CHECK(deployment.result);
    CHECK(deployment.reports == Reports{bloom_report, bloom_report, {"Deployed 4 files", true}});
    CHECK(paths_below(install_dir) == Paths{L"extensions\\", L"extensions\\veyra-linkward.crx", L"licences\\",
                                            L"licences\\Third party notices.txt", L"Read me first.txt",
                                            L"rules\\", L"rules\\categories\\",
                                            L"rules\\categories\\Default categories.json",
                                            L"rules\\exceptions.txt", L"VeyraLinkward.exe",
                                            L"VeyraLinkwardCommunicator.exe", L"VeyraLinkwardInstaller.exe"});
    CHECK(paths_below(data_dir) == Paths{L"logs\\", L"malware-sites.vybf", L"phishing-sites.vybf"});
    for (const wchar_t* name : {L"Read me first.txt", L"VeyraLinkward.exe", L"VeyraLinkwardCommunicator.exe",
                                L"rules\\categories\\Default categories.json"}) {
        CAPTURE(name);
        CHECK(have_same_bytes(install_dir + L"\\" + name, sample_products() + L"\\" + name));
    }
    CHECK(bytes_of(data_dir + L"\\malware-sites.vybf") ==
          bytes_of(sample_products() + L"\\malware-sites.vybf"));
    CHECK(bytes_of(install_dir + L"\\extensions\\veyra-linkward.crx") ==
          bytes_of(sample_products() + L"\\veyra-linkward.crx"));
    check_installer_copy();
}

TEST_CASE("a second deployment replaces every file of the first by content") {
    const std::vector<std::wstring> files = {L"plain.txt",   L"read-only.txt", L"hidden.txt",
                                             L"longer.txt",  L"sub\\deep.txt", L"sub\\read-only.txt",
                                             L"package.crx", L"filter.vybf",   L"VeyraLinkwardInstaller.exe"};
    const auto deployed_path = [](const std::wstring& file) {
        if (file == L"package.crx") {
            return install_dir + L"\\extensions\\" + file;
        }
        return (file == L"filter.vybf" ? data_dir : install_dir) + L"\\" + file;
    };
    for (const std::wstring& file : files) {
        write_file(source + L"\\" + file, "first and rather long");
    }
    REQUIRE(deploy().result);
    for (const wchar_t* file : {L"read-only.txt", L"sub\\read-only.txt"}) {
        REQUIRE(SetFileAttributesW(deployed_path(file).c_str(), FILE_ATTRIBUTE_READONLY) != FALSE);
    }
    REQUIRE(SetFileAttributesW(deployed_path(L"hidden.txt").c_str(),
                               FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM) != FALSE);
    write_file(deployed_path(L"own.txt"), "not of the product");
    for (const std::wstring& file : files) {
        CHECK(bytes_of(deployed_path(file)).size() > 6);
        write_file(source + L"\\" + file, "second");
    }
    write_file(source + L"\\longer.txt", std::string(100000, 'x'));

    const Deployment second = deploy();
    CHECK(second.result);
    CHECK(second.reports == Reports{bloom_report, {"Deployed 6 files", true}});
    for (const std::wstring& file : files) {
        CAPTURE(file);
        const std::string bytes = bytes_of(deployed_path(file));
        if (file == L"longer.txt") {
            CHECK(bytes.size() == 100000);
        } else if (file == L"VeyraLinkwardInstaller.exe") {
            check_installer_copy();
        } else {
            CHECK(bytes == "second");
        }
    }
    CHECK(bytes_of(deployed_path(L"own.txt")) == "not of the product");
}

TEST_CASE("each top-level entry goes where the first rule for it says") {
    const Paths never = {L"FORTWRIGHT.EXE", L"webview2loader.DLL", L"key.pem", L"Policy.PEM", L"a.b.Pem"};
    const Paths to_install_dir = {L"updater.exe",
                                  L"xFortwright.exe",
                                  L"Fortwright.exe.bak",
                                  L".pem",
                                  L".crx",
                                  L".vybf",
                                  L"pem",
                                  L"key.pem.txt",
                                  L"crx",
                                  L"two  blanks .x",
                                  L"key.\uFF50\uFF45\uFF4D",
                                  L"\u65E5\u672C.txt",
                                  L"caf\u00E9.exe",
                                  L"no extension"};
    const Paths to_extensions = {L"Ext.CRX", L"a.b.crx", L"..crx"};
    const Paths to_data = {L"Filter.VYBF", L"x.vybf"};
    for (const Paths& names : {never, to_install_dir, to_extensions, to_data}) {
        for (const std::wstring& name : names) {
            write_file(source + L"\\" + name, utf8_from_wide(name));
        }
    }
    for (const wchar_t* folder : {L"x.crx", L"Y.PEM", L"z.vybf", L"sub", L"fortwright.EXE.d"}) {
        for (const wchar_t* file : {L"key.pem", L"Fortwright.exe", L"in.crx", L"in.vybf"}) {
            write_file(source + L"\\" + folder + L"\\" + file, "inside");
        }
    }
    const Deployment deployment = deploy();
    CHECK(deployment.result);
    CHECK(deployment.reports == Reports{bloom_report, bloom_report, {"Deployed 17 files", true}});
    for (const std::wstring& name : to_install_dir) {
        CHECK(bytes_of(install_dir + L"\\" + name) == utf8_from_wide(name));
    }
    CHECK(paths_below(install_dir + L"\\extensions") == Paths{L"..crx", L"a.b.crx", L"Ext.CRX"});
    for (const wchar_t* folder : {L"x.crx", L"sub", L"fortwright.EXE.d"}) {
        CHECK(paths_below(install_dir + L"\\" + folder) ==
              Paths{L"Fortwright.exe", L"in.crx", L"in.vybf", L"key.pem"});
    }
    // Beyond these nothing but "extensions", the installer copy and, in the data folder, "logs".
    CHECK(paths_below(install_dir).size() ==
          to_install_dir.size() + (1 + to_extensions.size()) + size_t{3} * 5 + 1);
    CHECK(paths_below(data_dir) == Paths{L"Filter.VYBF", L"logs\\", L"x.vybf"});
}

TEST_CASE("the count has no singular and no empty form and a lost installer copy is no failure") {
    {
        make_folder(source);
        CHECK(deploy().reports == Reports{{"Deployed 0 files", true}});
        CHECK(paths_below(install_dir) == Paths{L"extensions\\", L"VeyraLinkwardInstaller.exe"});
        CHECK(paths_below(data_dir) == Paths{L"logs\\"});
        write_file(source + L"\\one.crx", "x");
        write_file(source + L"\\folder\\not counted.txt", "x");
        CHECK(deploy().reports == Reports{{"Deployed 1 files", true}});
    }
    {
        REQUIRE(DeleteFileW((install_dir + L"\\VeyraLinkwardInstaller.exe").c_str()) != FALSE);
        make_folder(install_dir + L"\\VeyraLinkwardInstaller.exe\\in the way");
        const Deployment deployment = deploy();
        CHECK(deployment.result);
        CHECK(deployment.reports == Reports{{"Deployed 1 files", true}});
    }
}

TEST_CASE("the running installer is skipped by its exact name and copied once under its new one") {
    write_file(source + L"\\" + own_name(), "the installer on the medium");
    write_file(source + L"\\MACHINE_TESTS.EXE.txt", "x");
    CHECK(deploy().reports == Reports{{"Deployed 1 files", true}});
    CHECK_FALSE(is_there(install_dir + L"\\" + own_name()));
    check_installer_copy();

    make_folder(L"C:\\Other case");
    write_file(L"C:\\Other case\\Machine_Tests.EXE", "another program");
    CHECK(deploy(L"C:\\Other case").reports == Reports{{"Deployed 1 files", true}});
    CHECK(bytes_of(install_dir + L"\\Machine_Tests.EXE") == "another program");
}

TEST_CASE("the install folder as its own source in whatever spelling only gives its bloom filters") {
    write_file(install_dir + L"\\VeyraLinkward.exe", "service");
    write_file(install_dir + L"\\one.VYBF", "new one");
    write_file(install_dir + L"\\two.vybf", "two");
    write_file(install_dir + L"\\folder.vybf\\x.vybf", "no filter");
    write_file(data_dir + L"\\one.VYBF", "old one", FILE_ATTRIBUTE_READONLY);
    make_link(L"C:\\Linked", install_dir);
    const Paths before = paths_below(install_dir);
    for (const std::wstring& spelling :
         {install_dir, install_dir + L"\\", std::wstring(L"c:\\PROGRAM FILES\\brackenfold\\VEYRA linkward"),
          std::wstring(L"C:\\Program Files\\.\\Brackenfold\\Veyra Linkward"),
          std::wstring(L"C:/Program Files/Brackenfold/../Brackenfold/Veyra Linkward/"),
          std::wstring(L"C:\\Linked")}) {
        CAPTURE(spelling);
        const Deployment deployment = deploy(spelling);
        CHECK(deployment.result);
        CHECK(deployment.reports ==
              Reports{{"Files already in install directory", true}, bloom_report, bloom_report});
    }
    CHECK(paths_below(install_dir) == before);
    CHECK(paths_below(data_dir) == Paths{L"logs\\", L"one.VYBF", L"two.vybf"});
    CHECK(bytes_of(data_dir + L"\\one.VYBF") == "new one");

    const OwnedFile in_use = lock_file(install_dir + L"\\one.VYBF");
    const Deployment silent = deploy(install_dir);
    CHECK(silent.result);
    CHECK(silent.reports == Reports{{"Files already in install directory", true}, bloom_report});
}

TEST_CASE("a source that contains the install folder is deployed without going into itself") {
    write_file(L"C:\\Program Files\\a.txt", "a");
    write_file(L"C:\\Program Files\\Vendor\\b.txt", "b");
    write_file(L"C:\\Program Files\\Brackenfold\\Other product\\c.txt", "c");
    const Deployment deployment = deploy(L"C:\\Program Files");
    CHECK(deployment.result);
    const std::wstring from = L"C:\\Program Files\\Brackenfold";
    CHECK(deployment.reports == Reports{{"Warning: failed to copy Brackenfold (" +
                                             file_error_text("copy", ERROR_INVALID_PARAMETER,
                                                             {from, install_dir + L"\\Brackenfold"}) +
                                             ")",
                                         false},
                                        {"Deployed 1 files", true}});
    CHECK(bytes_of(install_dir + L"\\a.txt") == "a");
    CHECK(bytes_of(install_dir + L"\\Vendor\\b.txt") == "b");
    CHECK_FALSE(is_there(install_dir + L"\\Brackenfold"));
}
