// Where the product files come from, and other places that the system names.

#include "common/installation_medium.h"

#include <algorithm>
#include <doctest/doctest.h>
#include <string>

#include <windows.h>
#include <shlobj.h>

#include "common/system_places.h"
#include "console/install.h"
#include "intercepted_call.h"
#include "linkward/install.h"
#include "readable.h"
#include "recorded_pauses.h"
#include "recorded_reports.h"
#include "test_files.h"

namespace {

const std::wstring console_program = L"C:\\Program Files\\Brackenfold\\FWC\\Fortwright.exe";
const std::wstring linkward_dir = L"C:\\Program Files\\Brackenfold\\Veyra Linkward";

DWORD WINAPI truncated_name(HMODULE /*module*/, LPWSTR path, DWORD size) {
    std::fill(path, path + size, L'x');
    path[size - 1] = L'\0';
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    // Windows counts the NUL of a name that it has cut off.
    return size;
}

HRESULT WINAPI failing_with_leftovers(HWND /*owner*/, int /*csidl*/, HANDLE /*token*/, DWORD /*flags*/,
                                      LPWSTR path) {
    std::wcscpy(path, L"C:\\leftover");
    return E_FAIL;
}

HRESULT WINAPI absent_folder(HWND /*owner*/, int /*csidl*/, HANDLE /*token*/, DWORD /*flags*/, LPWSTR path) {
    std::wcscpy(path, L"C:\\not made yet");
    return S_FALSE;
}

} // namespace

TEST_CASE("a drive letter alone means the root of the drive and everything else itself") {
    for (const wchar_t* text : {L"", L"E:\\", L"E:\\media", L"relative", L"\\\\server\\share", L"E:media"}) {
        g_source_dir = text;
        CHECK(install_source_dir() == text);
    }
    g_source_dir = L"E:";
    CHECK(install_source_dir() == L"E:\\");
    g_source_dir = L"\\\\?\\E:";
    CHECK(install_source_dir() == L"\\\\?\\E:\\");
    CHECK(g_source_dir == L"\\\\?\\E:");
}

TEST_CASE("both products come from the root of the drive whatever its current folder is") {
    for (const wchar_t* name : {L"Fortwright.exe", L"readme.txt"}) {
        write_file(std::wstring(L"C:\\media\\") + name, "product");
        write_file(std::wstring(L"C:\\media\\documents\\") + name, "private");
    }
    write_file(L"C:\\media\\documents\\letter.txt", "private");
    make_drive('E', L"C:\\media");
    REQUIRE(SetCurrentDirectoryW(L"E:\\documents") != FALSE);
    g_source_dir = L"E:";
    RecordedReports reports;
    RecordedPauses pauses;
    CHECK(install_fwc(reports.progress));
    install_linkward(reports.progress);
    REQUIRE(SetCurrentDirectoryW(L"C:\\") != FALSE);

    CHECK(bytes_of(console_program) == "product");
    CHECK(bytes_of(linkward_dir + L"\\readme.txt") == "product");
    CHECK_FALSE(is_there(linkward_dir + L"\\letter.txt"));
    CHECK(bytes_of(linkward_dir + L"\\documents\\letter.txt") == "private");
    CHECK(g_source_dir == L"E:");
}

TEST_CASE("the path of a program that is too long for its buffer ends before its end") {
    const InterceptedCall name("GetModuleFileNameW", truncated_name);
    CHECK(running_program_path() == std::wstring(MAX_PATH - 1, L'x'));
}

TEST_CASE("a folder that the shell does not know is no folder whatever the shell leaves behind") {
    {
        const InterceptedCall failing("SHGetFolderPathW", failing_with_leftovers);
        CHECK(shell_folder(CSIDL_DESKTOP) == L"");
        CHECK(program_files_dir() == L"");
    }
    const InterceptedCall absent("SHGetFolderPathW", absent_folder);
    CHECK(shell_folder(CSIDL_DESKTOP) == L"C:\\not made yet");
}
