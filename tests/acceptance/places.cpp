#include "places.h"

#include <windows.h>
#include <shlobj.h>

#include "product_facts.h"
#include "watched_places.h"

std::wstring program_root() {
    return folder_of_shell(CSIDL_PROGRAM_FILES) + L"\\" + maker_folder_name;
}

std::wstring data_root_folder() {
    return data_root;
}

std::wstring console_folder() {
    return program_root() + L"\\" + console_folder_name;
}

std::wstring linkward_folder() {
    return program_root() + L"\\" + linkward_folder_name;
}

std::wstring data_folder() {
    return data_root_folder() + L"\\" + linkward_folder_name;
}

std::wstring linkward_copy() {
    return linkward_folder() + L"\\" + linkward_copy_name;
}

std::wstring desktop_shortcut() {
    return folder_of_shell(CSIDL_DESKTOP) + L"\\" + console_name + L".lnk";
}

bool is_below_products(const std::wstring& path) {
    const auto is_below = [&](const std::wstring& root) {
        const auto length = static_cast<int>(root.size());
        return path.size() > root.size() + 1 && path[root.size()] == L'\\' &&
               CompareStringOrdinal(path.c_str(), length, root.c_str(), length, TRUE) == CSTR_EQUAL;
    };
    return is_below(program_root()) || is_below(data_root_folder());
}
