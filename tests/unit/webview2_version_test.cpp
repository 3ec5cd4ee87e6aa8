#include <doctest/doctest.h>

#include "webview2/runtime_version.h"

TEST_CASE("a runtime's version is read part by part") {
    struct Row {
        const wchar_t* text;
        std::optional<RuntimeVersion> version;
    };
    const Row rows[] = {
        {L"120.0.2210.91", RuntimeVersion{120, 0, 2210, 91}},
        {L"86.0.616.0", RuntimeVersion{86, 0, 616, 0}},
        {L"120", RuntimeVersion{120, 0, 0, 0}},
        {L"120.1", RuntimeVersion{120, 1, 0, 0}},
        {L"120.0.2210.91 beta", RuntimeVersion{120, 0, 2210, 91}},
        {L"120.0.2210.91.7", RuntimeVersion{120, 0, 2210, 91}},
        {L"120.", RuntimeVersion{120, 0, 0, 0}},
        {L"120..5", RuntimeVersion{120, 0, 0, 0}},
        {L"120.x.5", RuntimeVersion{120, 0, 0, 0}},
        {L"007.08", RuntimeVersion{7, 8, 0, 0}},
        {L"4294967295.4294967296.99999999999999999999999",
         RuntimeVersion{4294967295, 4294967295, 4294967295, 0}},
        {L"", std::nullopt},
        {L".120", std::nullopt},
        {L" 120", std::nullopt},
        {L"-1", std::nullopt},
        {L"Application", std::nullopt},
        {L"\x0661\x0662\x0660", std::nullopt}, // digits, but not decimal ASCII
    };
    for (const Row& row : rows) {
        CAPTURE(row.text);
        CHECK(parse_runtime_version(row.text) == row.version);
    }
}

TEST_CASE("a version folder is taken from 86.0.616.0 on") {
    struct Row {
        const wchar_t* folder;
        bool is_supported;
    };
    const Row rows[] = {
        {L"C:\\Runtime\\86.0.616.0", true},
        {L"C:\\Runtime\\86.0.615.9", false},
        {L"C:\\Runtime\\86.0.616", true},
        {L"C:\\Runtime\\86.0.615", false},
        {L"C:\\Runtime\\86.1", true},
        {L"C:\\Runtime\\86", false},
        {L"C:\\Runtime\\87", true},
        {L"C:\\Runtime\\85.9.999.9", false},
        {L"C:\\Runtime\\9.0.9999.0", false},
        {L"C:\\Runtime\\120.0.2210.91", true},
        {L"C:\\Runtime\\120.0.2210.91\\", false},
        {L"C:\\Runtime\\120.0.2210.91\\.", false},
        {L"C:\\120.0.2210.91\\Runtime", false},
        {L"\\120", true},
        {L"120.0.2210.91", false}, // no folder at all
        {L"C:/Runtime/120.0.2210.91", false},
        {L"\\", false},
        {L"", false},
    };
    for (const Row& row : rows) {
        CAPTURE(row.folder);
        CHECK(is_supported_version_folder(row.folder) == row.is_supported);
    }
}
