#pragma once

#include <array>
#include <span>

/// One Chromium-family browser that the products know.
struct BrowserInfo {
    /// The name shown to the user and sent to the page.
    const wchar_t* display_name;
    /// File name of the main program, in lower case. Opera and Opera GX share one.
    const wchar_t* exe_name;
    /// The browser's own settings key below HKEY_LOCAL_MACHINE.
    const wchar_t* vendor_key;
    /// The browser's policy key below HKEY_LOCAL_MACHINE.
    const wchar_t* policy_key;
    /// Paths of the main program relative to a search base; the list ends at the first empty slot.
    std::array<const wchar_t*, 4> relative_exe_paths;
};

/// Every known browser. The order is the order in which they are detected, closed, registered and cleaned.
extern const std::span<const BrowserInfo> known_browsers;
