#pragma once

#include <string>

/// The version of Wine that this program runs on, such as L"8.0"; empty on Windows itself.
std::wstring wine_version();

inline bool is_wine() {
    return !wine_version().empty();
}

/// The version that the system gives itself, such as L"10.0.19045".
std::wstring windows_version();
