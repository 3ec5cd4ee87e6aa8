#pragma once

#include <string>
#include <vector>

#include "browsers/catalogue.h"

/// A known browser that was found on this machine.
struct DetectedBrowser {
    /// A row of `known_browsers`.
    const BrowserInfo* info = nullptr;
    /// Full path of the program that was found.
    std::wstring exe_path;
};

/// Looks for every known browser in the program folders of the machine and of the user, then in App Paths.
/// Returns each at most once, in the order of the catalogue. Throws FileError when
/// the file system answers with anything but "found" or "not found".
std::vector<DetectedBrowser> detect_browsers();
