#include "common/paths.h"

#include <doctest/doctest.h>

namespace {

struct Joined {
    const wchar_t* folder;
    const wchar_t* name;
    const wchar_t* expected;
};

struct Taken {
    const wchar_t* path;
    const wchar_t* expected;
};

} // namespace

TEST_CASE("paths are joined with one separator and an absolute right side stands for itself") {
    const Joined rows[] = {
        {L"C:\\a", L"b", L"C:\\a\\b"},
        {L"C:\\a\\", L"b", L"C:\\a\\b"},
        {L"C:/a/", L"b", L"C:/a/b"},
        {L"C:/a", L"b/c", L"C:/a\\b/c"},
        {L"C:\\", L"b", L"C:\\b"},
        // A bare drive letter means the drive's current folder.
        {L"C:", L"b", L"C:b"},
        {L"\\\\?\\C:", L"b", L"\\\\?\\C:\\b"},
        {L"", L"b", L"b"},
        {L"a", L"", L"a\\"},
        {L"", L"", L""},
        {L"C:\\a", L"D:\\b", L"D:\\b"},
        {L"C:\\a", L"D:b", L"D:b"},
        {L"C:\\a", L"\\\\server\\share\\b", L"\\\\server\\share\\b"},
        {L"C:\\a", L"\\b", L"C:\\b"},
        {L"C:\\a", L"/b", L"C:/b"},
        {L"\\\\server\\share\\a", L"\\b", L"\\\\server\\share\\b"},
        {L"\\\\server\\share", L"b", L"\\\\server\\share\\b"},
        {L"a", L"..\\b", L"a\\..\\b"},
    };
    for (const Joined& row : rows) {
        CHECK(join_path(row.folder, row.name) == row.expected);
    }
}

TEST_CASE("the file name is what stands behind the last separator") {
    const Taken rows[] = {
        {L"C:\\a\\b.txt", L"b.txt"},
        {L"C:/a/b.txt", L"b.txt"},
        {L"C:\\a/b", L"b"},
        {L"C:\\a\\", L""},
        {L"C:\\", L""},
        {L"C:", L""},
        {L"C:b", L"b"},
        {L"b", L"b"},
        {L"", L""},
        {L"\\b", L"b"},
        {L"\\\\server\\share", L""},
        {L"\\\\server\\share\\b", L"b"},
        {L"\\\\?\\C:\\b", L"b"},
        {L"\\\\?\\C:\\", L""},
        {L"\\\\?\\UNC\\server\\share\\b", L"b"},
    };
    for (const Taken& row : rows) {
        CAPTURE(row.path);
        CHECK(file_name_of(row.path) == row.expected);
    }
}

TEST_CASE("the parent is the path without its last part and a root is its own") {
    const Taken rows[] = {
        {L"C:\\a\\b", L"C:\\a"},
        {L"C:/a/b", L"C:/a"},
        {L"C:\\a\\\\b", L"C:\\a"},
        {L"C:\\a\\", L"C:\\a"},
        {L"C:\\a", L"C:\\"},
        {L"C:\\", L"C:\\"},
        {L"C:a", L"C:"},
        {L"C:", L"C:"},
        {L"a", L""},
        {L"a\\b", L"a"},
        {L"\\a", L"\\"},
        {L"\\", L"\\"},
        {L"", L""},
        {L"\\\\server\\share\\a", L"\\\\server\\share\\"},
        {L"\\\\server\\share\\", L"\\\\server\\share\\"},
        {L"\\\\server\\share", L"\\\\server\\share"},
        {L"\\\\server", L"\\\\server"},
        {L"\\\\?\\C:\\a", L"\\\\?\\C:\\"},
        {L"\\\\?\\C:\\", L"\\\\?\\C:\\"},
        {L"\\\\?\\UNC\\server\\share\\a\\b", L"\\\\?\\UNC\\server\\share\\a"},
        {L"\\\\?\\UNC\\server\\share\\a", L"\\\\?\\UNC\\server\\share\\"},
    };
    for (const Taken& row : rows) {
        CAPTURE(row.path);
        CHECK(parent_of(row.path) == row.expected);
    }
}

TEST_CASE("the extension begins at the last dot of the file name") {
    const Taken rows[] = {
        {L"C:\\x.dir\\Policy.PEM", L".PEM"},
        {L"a.b.crx", L".crx"},
        {L"ends in a dot.", L"."},
        {L"..pem", L".pem"},
        {L"...", L"."},
        {L".pem", L""},
        {L"C:\\x\\.pem", L""},
        {L"C:.pem", L""},
        {L"no extension", L""},
        {L"C:\\x.dir\\name", L""},
        {L"C:\\x.dir\\", L""},
        {L".", L""},
        {L"..", L""},
        {L"", L""},
    };
    for (const Taken& row : rows) {
        CAPTURE(row.path);
        CHECK(extension_of(row.path) == row.expected);
    }
}
