#include "common/pending_operations.h"

#include <doctest/doctest.h>
#include <optional>
#include <string>

#include <windows.h>

#include "common/installation_medium.h"
#include "console/install.h"
#include "intercepted_call.h"
#include "linkward/install.h"
#include "pending_lists.h"
#include "recorded_pauses.h"
#include "recorded_reports.h"
#include "test_files.h"
#include "test_registry.h"

namespace {

const std::wstring folder = L"C:\\Our suite\\FWC";

// Written by the replacements below, on the test's thread.
int g_writes = 0;
LSTATUS g_answer = ERROR_SUCCESS;
std::optional<std::wstring> g_list_at_first_copy;

LSTATUS WINAPI counted_set(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size) {
    ++g_writes;
    auto* const set = real_function<decltype(RegSetValueExW)>("RegSetValueExW");
    return g_answer == ERROR_SUCCESS ? set(key, name, reserved, type, data, size) : g_answer;
}

LSTATUS WINAPI counted_delete(HKEY key, LPCWSTR name) {
    ++g_writes;
    auto* const remove = real_function<decltype(RegDeleteValueW)>("RegDeleteValueW");
    return g_answer == ERROR_SUCCESS ? remove(key, name) : g_answer;
}

LSTATUS WINAPI refused_open(HKEY root, LPCWSTR path, DWORD options, REGSAM access, PHKEY key) {
    if (session_manager_key == path) {
        return ERROR_ACCESS_DENIED;
    }
    return real_function<decltype(RegOpenKeyExW)>("RegOpenKeyExW")(root, path, options, access, key);
}

/// The folder of the suite leads to another drive, with a name of more than 260 characters.
DWORD WINAPI path_elsewhere(HANDLE /*file*/, LPWSTR path, DWORD size, DWORD /*flags*/) {
    const std::wstring elsewhere =
        L"\\\\?\\D:\\Real suite\\" + std::wstring(250, L'x') + L"\\" + std::wstring(250, L'y');
    if (size <= elsewhere.size()) {
        return static_cast<DWORD>(elsewhere.size()) + 1;
    }
    elsewhere.copy(path, elsewhere.size());
    path[elsewhere.size()] = L'\0';
    return static_cast<DWORD>(elsewhere.size());
}

DWORD WINAPI no_path(HANDLE /*file*/, LPWSTR /*path*/, DWORD /*size*/, DWORD /*flags*/) {
    SetLastError(ERROR_PATH_NOT_FOUND);
    return 0;
}

BOOL WINAPI noted_copy(LPCWSTR from, LPCWSTR to, BOOL fails_if_there) {
    if (!g_list_at_first_copy) {
        g_list_at_first_copy = stored_list(first_list) ? stored_list(first_list)->text : L"no list";
    }
    return real_function<decltype(CopyFileW)>("CopyFileW")(from, to, fails_if_there);
}

} // namespace

TEST_CASE("what was handed to Windows for deletion is cancelled however the caller spelled it") {
    make_folder(folder + L"\\deep");
    schedule_deletion(L"C:\\other.txt");
    schedule_deletion(L"C:\\Our suite\\FWC\\a b.exe");
    schedule_deletion(L"c:\\our SUITE\\fwc\\deep\\\u65E5.txt");
    schedule_move(L"C:\\Our suite\\FWC\\from.txt", L"C:\\Our suite\\FWC\\to.txt");
    schedule_deletion(L"\\\\?\\C:\\Our suite\\FWC\\long.txt");
    schedule_deletion(L"C:/Our suite//FWC/./deep/../slashes.txt");
    schedule_deletion(L"C:\\Our suite\\FWC2\\x.txt");
    REQUIRE(SetCurrentDirectoryW(folder.c_str()) != FALSE);
    schedule_deletion(L"relative.txt");
    schedule_move(L"C:\\new.txt", L"C:\\Our suite\\FWC\\a b.exe", MOVEFILE_REPLACE_EXISTING);
    schedule_deletion(L"C:\\Our suite\\FWC");
    cancel_pending_deletions_below(folder);
    const auto check_rest = [] {
        check_list(first_list, {L"\\??\\C:\\other.txt", L"", L"\\??\\C:\\Our suite\\FWC\\from.txt",
                                L"\\??\\C:\\Our suite\\FWC\\to.txt", L"\\??\\C:\\Our suite\\FWC2\\x.txt", L"",
                                L"\\??\\C:\\new.txt", L"!\\??\\C:\\Our suite\\FWC\\a b.exe",
                                L"\\??\\C:\\Our suite\\FWC", L""});
    };
    check_rest();
    // Neither does the spelling of the folder matter.
    for (const wchar_t* const spelling :
         {L"C:\\Our suite\\FWC\\", L"c:/our suite/fwc//", L"deep\\..", L".", L"\\\\?\\C:\\Our suite\\FWC"}) {
        CAPTURE(spelling);
        schedule_deletion(L"C:\\Our suite\\FWC\\again.txt");
        cancel_pending_deletions_below(spelling);
        check_rest();
    }
    schedule_deletion(L"C:\\Gone\\FWC\\a.exe");
    cancel_pending_deletions_below(L"C:\\Gone\\FWC\\");
    check_rest();
    cancel_pending_deletions_below(L"");
    check_rest();
}

TEST_CASE("both lists of newer systems are cleared and an empty one goes") {
    store_list(first_list, list_of({L"*1\\??\\C:\\Our suite\\FWC\\updater.exe", L"",
                                    L"*2\\??\\C:\\Our suite\\FWC\\gone.txt", L""}));
    store_list(second_list, list_of({L"*1\\??\\C:\\Windows\\x.dll", L"*1!\\??\\C:\\Windows\\y.dll",
                                     L"*1\\??\\c:\\our suite\\fwc\\sub\\x.txt", L"", L"*1\\??\\C:\\z", L""}));
    cancel_pending_deletions_below(folder);
    CHECK_FALSE(stored_list(first_list).has_value());
    check_list(second_list,
               {L"*1\\??\\C:\\Windows\\x.dll", L"*1!\\??\\C:\\Windows\\y.dll", L"*1\\??\\C:\\z", L""});
}

TEST_CASE("a long list keeps everything but our entries") {
    const std::wstring empty(2, L'\0');
    std::wstring list;
    std::wstring wanted;
    for (int number = 0; number < 2000; ++number) {
        const std::wstring name = L"\\file " + std::to_wstring(number) + empty;
        wanted += L"\\??\\C:\\Other suite\\FWC" + name;
        list += L"\\??\\C:\\Other suite\\FWC" + name + L"*1\\??\\C:\\Our suite\\FWC" + name;
    }
    store_list(first_list, list + L'\0');
    cancel_pending_deletions_below(folder);
    check_list(first_list, wanted + L'\0');
}

TEST_CASE("nothing is written when nothing of ours is listed or the list is damaged") {
    const std::wstring ours = list_of({L"\\??\\C:\\Our suite\\FWC\\a.exe", L""});
    const std::wstring theirs =
        list_of({L"\\??\\C:\\Our suite\\FWC2\\a", L"", L"\\??\\C:\\a", L"\\??\\C:\\b"});
    const size_t size = ours.size() * sizeof(wchar_t);
    struct Row {
        const char* what;
        DWORD type;
        std::wstring text;
        size_t size_bytes;
    };
    const Row rows[] = {
        {"somebody else's", REG_MULTI_SZ, theirs, theirs.size() * sizeof(wchar_t)},
        {"an empty list", REG_MULTI_SZ, list_of({}), sizeof(wchar_t)},
        {"no bytes", REG_MULTI_SZ, L"", 0},
        {"without its end", REG_MULTI_SZ, ours, size - sizeof(wchar_t)},
        {"without both terminators", REG_MULTI_SZ, ours, size - (2 * sizeof(wchar_t))},
        {"a byte too few", REG_MULTI_SZ, ours, size - 1},
        {"a byte too many", REG_MULTI_SZ, ours + L' ', size + 1},
        {"a text too many", REG_MULTI_SZ, ours + L'\0', size + sizeof(wchar_t)},
        {"a text", REG_SZ, ours, size},
        {"an expandable text", REG_EXPAND_SZ, ours, size},
        {"bytes", REG_BINARY, ours, size},
        {"no type", REG_NONE, ours, size},
    };
    for (const Row& row : rows) {
        CAPTURE(row.what);
        for (const wchar_t* const name : {first_list, second_list}) {
            set_bytes(session_manager_key, name, row.type, row.text.data(), row.size_bytes);
        }
        const RegistryValue before = *stored_list(first_list);
        const RegistryValue before_second = *stored_list(second_list);
        const InterceptedCall set("RegSetValueExW", counted_set);
        const InterceptedCall remove("RegDeleteValueW", counted_delete);
        cancel_pending_deletions_below(folder);
        CHECK(g_writes == 0);
        CHECK(stored_list(first_list) == before);
        CHECK(stored_list(second_list) == before_second);
    }
    delete_list(first_list);
    delete_list(second_list);
    cancel_pending_deletions_below(folder);
    CHECK_FALSE(stored_list(first_list).has_value());
    CHECK_FALSE(stored_list(second_list).has_value());
}

TEST_CASE("a folder behind a link is found by the name that it really has") {
    const std::wstring elsewhere =
        L"D:\\Real suite\\" + std::wstring(250, L'x') + L"\\" + std::wstring(250, L'y');
    const std::wstring listed = L"*1\\??\\" + elsewhere + L"\\FWC\\a.exe";
    make_folder(L"C:\\Our suite");
    const std::wstring beside = L"*1\\??\\" + elsewhere + L"\\a.exe";
    const std::wstring list =
        list_of({listed.c_str(), L"", L"\\??\\C:\\Our suite\\FWC\\b.exe", L"", beside.c_str(), L""});
    SUBCASE("with its missing last part as it is spelled") {
        store_list(first_list, list);
        const InterceptedCall path("GetFinalPathNameByHandleW", path_elsewhere);
        cancel_pending_deletions_below(folder);
        check_list(first_list, {beside.c_str(), L""});
    }
    SUBCASE("unless the system cannot tell") {
        store_list(first_list, list);
        const InterceptedCall path("GetFinalPathNameByHandleW", no_path);
        cancel_pending_deletions_below(folder);
        check_list(first_list, {listed.c_str(), L"", beside.c_str(), L""});
    }
    SUBCASE("and a missing folder never by the drive's current one") {
        store_list(first_list,
                   list_of({L"\\??\\C:\\Our suite\\FWC\\a.exe", L"", L"\\??\\C:\\FWC\\a.exe", L""}));
        REQUIRE(SetCurrentDirectoryW(L"C:\\Our suite") != FALSE);
        cancel_pending_deletions_below(L"C:\\FWC");
        check_list(first_list, {L"\\??\\C:\\Our suite\\FWC\\a.exe", L""});
    }
}

TEST_CASE("a refusal is met once and changes nothing") {
    store_list(first_list, list_of({L"\\??\\C:\\Our suite\\FWC\\a.exe", L"", L"\\??\\C:\\z", L""}));
    store_list(second_list, list_of({L"\\??\\C:\\Our suite\\FWC\\a.exe", L""}));
    const RegistryValue before = *stored_list(first_list);
    {
        const InterceptedCall open("RegOpenKeyExW", refused_open);
        cancel_pending_deletions_below(folder);
    }
    CHECK(stored_list(first_list) == before);
    {
        const InterceptedCall set("RegSetValueExW", counted_set);
        const InterceptedCall remove("RegDeleteValueW", counted_delete);
        g_answer = ERROR_ACCESS_DENIED;
        cancel_pending_deletions_below(folder);
        CHECK(g_writes == 2);
        g_answer = ERROR_SUCCESS;
        CHECK(stored_list(first_list) == before);
        cancel_pending_deletions_below(folder);
        CHECK(g_writes == 4);
    }
    CHECK_FALSE(stored_list(second_list).has_value());
}

TEST_CASE("each product's installation cancels the deletions below its folder before it copies") {
    RecordedPauses pauses;
    RecordedReports reports;
    g_source_dir = sample_products();
    const std::wstring suite = L"C:\\Program Files\\Brackenfold\\";
    const std::wstring console_file = suite + L"FWC\\updater.exe";
    const std::wstring linkward_file = suite + L"Veyra Linkward\\VeyraLinkwardInstaller.exe";
    schedule_deletion(console_file.c_str());
    schedule_deletion(L"C:\\other.txt");
    schedule_deletion(linkward_file.c_str());
    const InterceptedCall copy("CopyFileW", noted_copy);
    CHECK(install_fwc(reports.progress));
    check_list(first_list, {L"\\??\\C:\\other.txt", L"", (L"\\??\\" + linkward_file).c_str(), L""});
    CHECK(g_list_at_first_copy == stored_list(first_list)->text);

    g_list_at_first_copy.reset();
    CHECK(install_linkward(reports.progress));
    check_list(first_list, {L"\\??\\C:\\other.txt", L""});
    CHECK(g_list_at_first_copy == stored_list(first_list)->text);
}
