#pragma once

#include <initializer_list>
#include <string_view>

/// Appends the parts, one after the other, and CR LF to the file at `path` as UTF-8, in one write, so that
/// lines of programs that run at the same time do not mix. Returns false when the file cannot be opened or
/// written, or when the text is longer than a path and a command line can be. One thread at a time.
bool append_line(const wchar_t* path, std::initializer_list<std::wstring_view> parts);
