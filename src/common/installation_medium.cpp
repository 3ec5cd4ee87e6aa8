#include "common/installation_medium.h"

std::wstring& g_source_dir = *new std::wstring;

std::wstring install_source_dir() {
    // Behind a colon nothing but a separator leads to the root, also where "\\?\" stands before the letter.
    const bool is_drive = !g_source_dir.empty() && g_source_dir.back() == L':';
    return is_drive ? g_source_dir + L'\\' : g_source_dir;
}
