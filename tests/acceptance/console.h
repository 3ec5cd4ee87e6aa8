#pragma once

#include <string>
#include <string_view>

/// Writes to standard output or standard error, as UTF-8 with LF at the ends of lines, at once.
void print(std::wstring_view text);
void complain(std::wstring_view text);
