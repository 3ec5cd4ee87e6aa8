#include "print.h"

#include <cstdio>

void print(const std::string& text) {
    std::puts(text.c_str());
    std::fflush(stdout);
}

std::string hex(HRESULT result) {
    char text[11] = {};
    std::snprintf(text, sizeof(text), "0x%08X", static_cast<unsigned>(result));
    return text;
}

std::wstring wide_from(const std::string& text) {
    std::wstring wide(text.size(), L'\0');
    wide.resize(static_cast<std::size_t>(MultiByteToWideChar(
        CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide.data(), static_cast<int>(wide.size()))));
    return wide;
}

std::string ascii_from(const wchar_t* text) {
    std::string out;
    for (; *text != L'\0'; ++text) {
        char escaped[7] = {static_cast<char>(*text)};
        if (*text < L' ' || *text > L'~') {
            std::snprintf(escaped, sizeof(escaped), "\\u%04X", static_cast<unsigned>(*text));
        }
        out += escaped;
    }
    return out;
}
