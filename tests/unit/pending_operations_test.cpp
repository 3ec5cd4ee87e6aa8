#include "common/pending_operations.h"

#include <doctest/doctest.h>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

namespace {

using Texts = std::initializer_list<const wchar_t*>;

/// The list as it is stored: every text with its terminator, and one more at the end.
std::wstring list_of(Texts texts) {
    std::wstring list;
    for (const wchar_t* const text : texts) {
        list += text;
        list += L'\0';
    }
    return list + L'\0';
}

const std::vector<std::wstring> folders = {L"\\??\\C:\\Our suite\\FWC", L"\\??\\D:\\Moved\\FWC"};

std::optional<std::wstring> kept_of(Texts texts) {
    return without_deletions_below(list_of(texts), folders);
}

} // namespace

TEST_CASE("a deletion below the folder goes in every spelling that Windows writes") {
    for (const wchar_t* const path :
         {L"\\??\\C:\\Our suite\\FWC\\a.exe", L"\\??\\c:\\OUR SUITE\\fwc\\a.exe",
          L"*1\\??\\C:\\Our suite\\FWC\\a.exe", L"*2\\??\\C:\\Our suite\\FWC\\deep\\er\\a.exe",
          L"*0\\??\\C:\\Our suite\\FWC\\folder\\", L"*\\??\\C:\\Our suite\\FWC\\a",
          L"*12\\??\\D:\\moved\\fwc\\a"}) {
        CAPTURE(path);
        CHECK(kept_of({path, L""}) == L"");
        CHECK(kept_of({L"\\??\\C:\\before", L"", path, L"", L"\\??\\C:\\x", L"!\\??\\C:\\y"}) ==
              list_of({L"\\??\\C:\\before", L"", L"\\??\\C:\\x", L"!\\??\\C:\\y"}));
    }
}

TEST_CASE("every other operation stays with its neighbours in their order") {
    for (const wchar_t* const path :
         {L"\\??\\C:\\Our suite\\FWC2\\a.exe", L"\\??\\C:\\Our suite\\FWC", L"\\??\\C:\\Our suite\\FWC\\",
          L"\\??\\C:\\Our suite\\a.exe", L"\\??\\E:\\Our suite\\FWC\\a.exe", L"C:\\Our suite\\FWC\\a.exe",
          L"\\\\?\\C:\\Our suite\\FWC\\a.exe", L"1\\??\\C:\\Our suite\\FWC\\a.exe", L"*", L"*1", L"*1x",
          L"\\??\\D:\\\\??\\C:\\Our suite\\FWC\\a.exe", L"\\??\\C:\\Our suite\\FW\u0421\\a.exe"}) {
        CAPTURE(path);
        CHECK(kept_of({path, L""}) == std::nullopt);
        CHECK(kept_of({L"\\??\\C:\\Our suite\\FWC\\a", L"", path, L"", L"*1\\??\\C:\\Our suite\\FWC\\b", L"",
                       path, L""}) == list_of({path, L"", path, L""}));
    }
    // Moves, even of our own files.
    CHECK(kept_of({L"\\??\\C:\\Our suite\\FWC\\a", L"\\??\\C:\\Our suite\\FWC\\b"}) == std::nullopt);
    CHECK(kept_of({L"*1\\??\\C:\\new", L"*1!\\??\\C:\\Our suite\\FWC\\a"}) == std::nullopt);
    CHECK(without_deletions_below(list_of({L"\\??\\C:\\a", L""}), {}) == std::nullopt);
}

TEST_CASE("a list of operations that is damaged is left alone") {
    const std::wstring ours = list_of({L"\\??\\C:\\Our suite\\FWC\\a.exe", L""});
    REQUIRE(without_deletions_below(ours, folders) == L"");
    const std::wstring end(1, L'\0');
    CHECK(kept_of({}) == std::nullopt);
    const std::wstring damaged[] = {
        L"",
        ours.substr(0, ours.size() - 1),
        ours.substr(0, ours.size() - 2),
        ours.substr(0, ours.size() - 3),
        ours + end,
        ours + L"x",
        ours + ours,
        end + ours,
        list_of({L"\\??\\C:\\Our suite\\FWC\\a.exe", L"", L"\\??\\C:\\b"}),
        list_of({L"\\??\\C:\\Our suite\\FWC\\a.exe", L"", L"", L"\\??\\C:\\b"}),
        list_of({L"\\??\\C:\\b", L"\\??\\C:\\Our suite\\FWC\\a.exe", L""}),
    };
    for (const std::wstring& list : damaged) {
        CAPTURE(list.size());
        CHECK(without_deletions_below(list, folders) == std::nullopt);
    }
}
