#pragma once

#include <string>

/// The native messaging host's manifest for the Chromium family, with LF line ends; the path in it is in the
/// system's ANSI code page.
std::string chromium_manifest(const std::wstring& host_program);

/// The same for Firefox.
std::string firefox_manifest(const std::wstring& host_program);

/// A path for the inside of a JSON string, in the system's ANSI code page: backslashes doubled, double quotes
/// with a backslash in front.
std::string json_escape_path(const std::wstring& path);
