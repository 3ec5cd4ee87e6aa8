// Where the two products belong on this machine.
#pragma once

#include <string>

std::wstring program_root();     ///< the maker's folder below Program Files
std::wstring data_root_folder(); ///< the maker's folder below ProgramData
std::wstring console_folder();
std::wstring linkward_folder();
std::wstring data_folder();   ///< the web protection's below ProgramData
std::wstring linkward_copy(); ///< the installer's copy that Add/Remove Programs starts
std::wstring desktop_shortcut();

/// Whether a path lies below one of the maker's folders, whatever its letter case.
bool is_below_products(const std::wstring& path);
