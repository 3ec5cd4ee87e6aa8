#pragma once

#include <string>

/// UTF-16 to UTF-8. An unpaired surrogate becomes U+FFFD, an empty text stays empty.
std::string to_utf8(const std::wstring& text);

/// UTF-8 to UTF-16. Invalid bytes become whatever the system's conversion makes of them.
std::wstring from_utf8(const std::string& text);

/// UTF-16 to the system's ANSI code page. A character that the code page does not hold becomes the system's
/// default character (a question mark); it never becomes a look-alike.
std::string to_ansi(const std::wstring& text);

/// Lowers every character with towlower; for comparing file names without regard to case.
std::wstring to_lower(std::wstring text);

/// Lowers the ASCII letters A to Z and nothing else, byte by byte.
std::string ascii_to_lower(std::string text);
