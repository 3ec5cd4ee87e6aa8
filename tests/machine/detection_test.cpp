#include "browsers/detection.h"

#include <doctest/doctest.h>
#include <string>
#include <vector>

#include <windows.h>
#include <shlobj.h>

#include "expected_browsers.h"
#include "file_error_text.h"
#include "intercepted_call.h"
#include "readable.h"
#include "refused_calls.h"
#include "test_files.h"
#include "test_registry.h"

namespace {

const std::wstring programs = L"C:\\Program Files\\";
const std::wstring programs_x86 = L"C:\\Program Files (x86)\\";

/// The programs' places below a base, in the order of the catalogue.
const std::vector<std::wstring> relative_paths = [] {
    std::vector<std::wstring> paths;
    paths.reserve(expected_browsers.size());
    for (const ExpectedBrowser& browser : expected_browsers) {
        paths.push_back(browser.path);
    }
    return paths;
}();

std::wstring local_app_data() {
    wchar_t path[MAX_PATH] = {};
    REQUIRE(SUCCEEDED(SHGetFolderPathW(nullptr, CSIDL_LOCAL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, path)));
    return std::wstring(path) + L"\\";
}

/// "name: path" of each browser found.
std::vector<std::wstring> detected() {
    std::vector<std::wstring> lines;
    for (const DetectedBrowser& browser : detect_browsers()) {
        const auto row = static_cast<size_t>(browser.info - known_browsers.data());
        REQUIRE(row < known_browsers.size());
        lines.push_back(std::wstring(browser.info->display_name) + L": " + browser.exe_path);
    }
    return lines;
}

using Found = std::vector<std::wstring>;

const std::wstring app_paths = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\";

DWORD WINAPI chrome_denied(LPCWSTR path) {
    if (std::wstring(path).find(L"chrome.exe") != std::wstring::npos) {
        SetLastError(ERROR_ACCESS_DENIED);
        return INVALID_FILE_ATTRIBUTES;
    }
    return real_function<decltype(GetFileAttributesW)>("GetFileAttributesW")(path);
}

LSTATUS WINAPI checked_open(HKEY root, LPCWSTR path, DWORD options, REGSAM access, HKEY* key) {
    CHECK(root == HKEY_LOCAL_MACHINE);
    CHECK(access == 0x20119);
    return real_function<decltype(RegOpenKeyExW)>("RegOpenKeyExW")(root, path, options, access, key);
}

HANDLE WINAPI in_use(LPCWSTR /*path*/, DWORD /*access*/, DWORD /*share*/, LPSECURITY_ATTRIBUTES /*security*/,
                     DWORD /*creation*/, DWORD /*flags*/, HANDLE /*model*/) {
    SetLastError(ERROR_SHARING_VIOLATION);
    return INVALID_HANDLE_VALUE;
}

} // namespace

TEST_CASE("the catalogue has the expected rows with everything that other steps read") {
    REQUIRE(known_browsers.size() == expected_browsers.size());
    for (size_t i = 0; i < expected_browsers.size(); ++i) {
        const BrowserInfo& row = known_browsers[i];
        const ExpectedBrowser& expected = expected_browsers[i];
        CHECK(row.display_name == expected.name);
        CHECK(row.exe_name == expected.program);
        CHECK(row.vendor_key == L"SOFTWARE\\" + expected.settings);
        CHECK(row.policy_key == L"SOFTWARE\\Policies\\" + expected.settings);
        CHECK(row.relative_exe_paths[0] == expected.path);
        CHECK(row.relative_exe_paths[1] == nullptr);
        CHECK(row.relative_exe_paths[2] == nullptr);
        CHECK(row.relative_exe_paths[3] == nullptr);
    }
    CHECK(detect_browsers().empty());
}

TEST_CASE("all browsers are found in the order of the catalogue") {
    Found expected;
    for (size_t i = expected_browsers.size(); i > 0; --i) {
        const ExpectedBrowser& browser = expected_browsers[i - 1];
        write_file(programs + browser.path, std::to_string(i));
        expected.insert(expected.begin(), browser.name + L": " + programs + browser.path);
    }
    CHECK(detected() == expected);
    const std::vector<DetectedBrowser> browsers = detect_browsers();
    REQUIRE(browsers.size() == expected_browsers.size());
    for (size_t i = 0; i < browsers.size(); ++i) {
        CHECK(browsers[i].info == &known_browsers[i]);
    }
}

TEST_CASE("a browser is found below each of the four bases and the first one wins") {
    const std::vector<std::wstring> bases = {programs, programs_x86, local_app_data() + L"Programs\\",
                                             local_app_data()};
    for (size_t i = 0; i < bases.size(); ++i) {
        write_file(bases[i] + relative_paths[i], "x");
    }
    CHECK(detected() == Found{L"Microsoft Edge: " + bases[0] + relative_paths[0],
                              L"Google Chrome: " + bases[1] + relative_paths[1],
                              L"Brave: " + bases[2] + relative_paths[2],
                              L"Vivaldi: " + bases[3] + relative_paths[3]});
    // From the last base to the first: each earlier one takes over.
    for (size_t i = bases.size(); i > 0; --i) {
        write_file(bases[i - 1] + relative_paths[4], std::to_string(i));
        const Found found = detected();
        REQUIRE(found.size() == 5);
        CHECK(found[4] == L"Opera: " + bases[i - 1] + relative_paths[4]);
    }
}

TEST_CASE("an entry of any type counts as a browser") {
    make_folder(programs + relative_paths[0]);
    make_folder(L"C:\\elsewhere");
    make_folder(programs + L"Google\\Chrome\\Application");
    make_link(programs + relative_paths[1], L"C:\\elsewhere");
    write_file(programs + relative_paths[2], "", FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
    CHECK(detected() == Found{L"Microsoft Edge: " + programs + relative_paths[0],
                              L"Google Chrome: " + programs + relative_paths[1],
                              L"Brave: " + programs + relative_paths[2]});
}

TEST_CASE("a program that an earlier browser was found with is skipped and the search goes on") {
    write_file(programs + L"Opera\\opera.exe", "x");
    make_folder(programs + L"Opera GX");
    REQUIRE(CreateHardLinkW((programs + L"Opera GX\\opera.exe").c_str(),
                            (programs + L"Opera\\opera.exe").c_str(), nullptr) != FALSE);
    CHECK(detected() == Found{L"Opera: " + programs + L"Opera\\opera.exe"});

    // The folder under another name, further down the bases.
    make_link(programs_x86 + L"Opera GX", programs + L"Opera");
    CHECK(detected() == Found{L"Opera: " + programs + L"Opera\\opera.exe"});

    write_file(local_app_data() + L"Opera GX\\opera.exe", "another");
    CHECK(detected() == Found{L"Opera: " + programs + L"Opera\\opera.exe",
                              L"Opera GX: " + local_app_data() + L"Opera GX\\opera.exe"});
}

TEST_CASE("a browser that no base holds is taken from App Paths without comparing it") {
    write_file(L"C:\\Portable\\chrome.exe", "x");
    set_text(app_paths + L"chrome.exe", L"", L"C:\\Portable\\chrome.exe");
    write_file(programs + L"Opera\\opera.exe", "x");
    set_text(app_paths + L"opera.exe", L"", programs + L"Opera\\opera.exe");
    // A folder, with another letter case in the key's name.
    make_folder(L"C:\\Portable\\brave");
    set_text(app_paths + L"BRAVE.EXE", L"", L"C:\\Portable\\brave");
    const InterceptedCall open("RegOpenKeyExW", checked_open);
    CHECK(detected() == Found{L"Google Chrome: C:\\Portable\\chrome.exe", L"Brave: C:\\Portable\\brave",
                              L"Opera: " + programs + L"Opera\\opera.exe",
                              L"Opera GX: " + programs + L"Opera\\opera.exe"});

    write_file(local_app_data() + relative_paths[1], "x");
    CHECK(detected()[0] == L"Google Chrome: " + local_app_data() + relative_paths[1]);
}

TEST_CASE("an App Paths value is a plain path of any type as far as its first NUL and 520 bytes at most") {
    {
        const std::wstring program = L"C:\\Portable\\browser.exe";
        write_file(program, "x");
        set_text(app_paths + L"msedge.exe", L"", L"\"" + program + L"\"");
        set_text(app_paths + L"chrome.exe", L"", L"%SystemDrive%\\Portable\\browser.exe", REG_EXPAND_SZ);
        set_text(app_paths + L"brave.exe", L"", L"C:\\Portable\\none.exe");
        set_text(app_paths + L"vivaldi.exe", L"Path", program);
        set_text(app_paths + L"opera.exe", L"", L"");
        CHECK(detected().empty());
    }
    {
        const std::wstring program = L"C:\\Portable\\browser.exe";
        write_file(program, "x");
        const size_t size = program.size() * sizeof(wchar_t);
        set_bytes(app_paths + L"msedge.exe", L"", REG_SZ, program.data(), size);
        set_bytes(app_paths + L"chrome.exe", L"", REG_BINARY, program.data(), size);
        std::wstring padded = program + L'\0' + std::wstring(L"more");
        padded.resize(260, L'-');
        set_bytes(app_paths + L"brave.exe", L"", REG_EXPAND_SZ, padded.data(), 520);
        set_bytes(app_paths + L"vivaldi.exe", L"", REG_SZ, (padded + L'-').data(), 522);
        CHECK(detected() ==
              Found{L"Microsoft Edge: " + program, L"Google Chrome: " + program, L"Brave: " + program});
    }
}

TEST_CASE("an unterminated App Paths value of 520 bytes is read to its end and not beyond") {
    std::wstring path = L"C:\\Portable";
    while (path.size() < 240) {
        path += L"\\a folder";
    }
    path += L"\\" + std::wstring(260 - path.size() - 1, L'b');
    REQUIRE(path.size() == 260);
    set_bytes(app_paths + L"msedge.exe", L"", REG_SZ, path.data(), 520);
    if (is_there(path.substr(0, path.find_last_of(L'\\')))) {
        FAIL("the machine was not fresh");
    }
    CHECK(detected().empty());
    write_file(path, "x");
    CHECK(detected() == Found{L"Microsoft Edge: " + path});
}

TEST_CASE("a file system that gives no answer ends the detection with the operation in the text") {
    write_file(programs + L"Opera\\opera.exe", "x");
    write_file(programs + L"Opera GX\\opera.exe", "x");
    {
        const InterceptedCall denied("GetFileAttributesW", chrome_denied);
        CHECK(error_of([] { detect_browsers(); }) ==
              file_error_text("exists", ERROR_ACCESS_DENIED, {programs + relative_paths[1]}));
    }
    const InterceptedCall refused("CreateFileW", in_use);
    CHECK(error_of([] { detect_browsers(); }) ==
          file_error_text("equivalent", ERROR_SHARING_VIOLATION,
                          {programs + L"Opera\\opera.exe", programs + L"Opera GX\\opera.exe"}));
}

TEST_CASE("without shell folders the search is relative to the current folder") {
    make_folder(L"C:\\Current");
    REQUIRE(SetCurrentDirectoryW(L"C:\\Current") != FALSE);
    const InterceptedCall failing("SHGetFolderPathW", no_shell_folder);
    CHECK(detected().empty());
    write_file(L"C:\\Current\\" + relative_paths[3], "x");
    write_file(L"C:\\Current\\Programs\\" + relative_paths[1], "x");
    CHECK(detected() ==
          Found{L"Google Chrome: Programs\\" + relative_paths[1], L"Vivaldi: " + relative_paths[3]});
}
