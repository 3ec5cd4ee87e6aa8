#pragma once

#include <string>

#include <windows.h>

/// Prints one line, at once.
void print(const std::string& text);

std::string hex(HRESULT result);

/// From UTF-8.
std::wstring wide_from(const std::string& text);

/// ASCII with everything else as \uXXXX, so that nothing is lost on the way to the reader.
std::string ascii_from(const wchar_t* text);
