#include "common/text.h"

#include <algorithm>
#include <cwctype>

#include <windows.h>

namespace {

std::string to_narrow(UINT code_page, DWORD flags, const std::wstring& text) {
    if (text.empty()) {
        return {};
    }
    const int length = static_cast<int>(text.size());
    const int size = WideCharToMultiByte(code_page, flags, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<size_t>(size), '\0');
    WideCharToMultiByte(code_page, flags, text.data(), length, narrow.data(), size, nullptr, nullptr);
    return narrow;
}

} // namespace

std::string to_utf8(const std::wstring& text) {
    return to_narrow(CP_UTF8, 0, text);
}

std::wstring from_utf8(const std::string& text) {
    if (text.empty()) {
        return {};
    }
    const int size = static_cast<int>(text.size());
    const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0);
    std::wstring wide(static_cast<size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), length);
    return wide;
}

std::string to_ansi(const std::wstring& text) {
    // The system refuses the flag when the ANSI code page is UTF-8, which needs no best fit anyway.
    const DWORD flags = GetACP() == CP_UTF8 ? 0 : WC_NO_BEST_FIT_CHARS;
    return to_narrow(CP_ACP, flags, text);
}

std::wstring to_lower(std::wstring text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](wchar_t c) { return static_cast<wchar_t>(std::towlower(c)); });
    return text;
}

std::string ascii_to_lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}
