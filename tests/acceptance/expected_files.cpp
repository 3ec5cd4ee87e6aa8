#include "expected_files.h"

#include <windows.h>

#include "expected_registry.h"
#include "places.h"
#include "product_facts.h"
#include "read_files.h"

namespace {

bool is_same_name(const std::wstring& a, const std::wstring& b) {
    return CompareStringOrdinal(a.c_str(), -1, b.c_str(), -1, TRUE) == CSTR_EQUAL;
}

std::wstring extension_of(const std::wstring& name) {
    const size_t dot = name.rfind(L'.');
    return dot == std::wstring::npos || dot == 0 ? L"" : name.substr(dot);
}

// Where a file or folder that lies in the medium itself goes; empty for what is not installed.
std::wstring place_of(const TreeEntry& entry) {
    const std::wstring extension = extension_of(entry.name);
    for (const wchar_t* const name : {installer_name, console_program, console_library}) {
        if (is_same_name(entry.name, name)) {
            return {};
        }
    }
    if (is_same_name(extension, L".pem")) {
        return {};
    }
    if (entry.is_folder) {
        return linkward_folder();
    }
    if (is_same_name(extension, L".vybf")) {
        return data_folder();
    }
    return is_same_name(extension, L".crx") ? linkward_folder() + L"\\extensions" : linkward_folder();
}

void add_manifest(Facts& facts, const wchar_t* name, const std::string& text) {
    add_file_fact(facts, linkward_folder() + L"\\" + name, text);
}

} // namespace

void add_console_files(Facts& facts, const std::wstring& medium, const std::wstring& program) {
    for (const wchar_t* const name : {console_program, console_library}) {
        add_copy_fact(facts, console_folder() + L"\\" + name, medium + L"\\" + name);
    }
    add_copy_fact(facts, console_folder() + L"\\" + console_copy_name, program);
}

void add_linkward_files(Facts& facts, const std::wstring& medium, const std::wstring& program) {
    for (const std::wstring& folder : {linkward_folder(), linkward_folder() + L"\\extensions",
                                       data_root_folder(), data_folder(), data_folder() + L"\\logs"}) {
        add_folder_fact(facts, folder);
    }
    std::wstring place; // of the top entry, which comes before what is below it
    for (const TreeEntry& entry : read_tree(medium).value_or(FolderTree()).entries) {
        if (entry.depth == 0) {
            place = place_of(entry);
        }
        if (place.empty()) {
            continue;
        }
        std::wstring path = place + L"\\";
        path += entry.path;
        if (entry.is_folder) {
            add_folder_fact(facts, path);
        } else {
            add_copy_fact(facts, path, medium + L"\\" + entry.path);
        }
    }
    add_manifest(facts, chromium_manifest_name, expected_chromium_manifest());
    add_manifest(facts, firefox_manifest_name, expected_firefox_manifest());
    add_copy_fact(facts, linkward_copy(), program);
}
