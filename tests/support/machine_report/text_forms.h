#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <windows.h>

/// Bytes that are no UTF-8 become U+FFFD.
std::wstring wide_from_utf8(std::string_view text);
std::string utf8_from_wide(std::wstring_view text);

/// "1,234,567"
std::wstring with_thousands(uint64_t number);

/// The name of a registry value type, such as "REG_SZ".
std::wstring registry_type_name(DWORD type);

/// `text` with blanks behind it up to `width` columns; longer texts stay whole.
std::wstring padded(std::wstring_view text, size_t width);
/// The same with the blanks in front.
std::wstring padded_left(std::wstring_view text, size_t width);
