#include "text_forms.h"

std::wstring wide_from_utf8(std::string_view text) {
    if (text.empty()) {
        return {};
    }
    const int length = static_cast<int>(text.size());
    std::wstring wide(static_cast<size_t>(MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0)),
                      L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

std::string utf8_from_wide(std::wstring_view text) {
    if (text.empty()) {
        return {};
    }
    const int length = static_cast<int>(text.size());
    std::string narrow(static_cast<size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0,
                                                               nullptr, nullptr)),
                       '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, narrow.data(), static_cast<int>(narrow.size()),
                        nullptr, nullptr);
    return narrow;
}

std::wstring with_thousands(uint64_t number) {
    std::wstring digits = std::to_wstring(number);
    for (size_t place = 3; place < digits.size(); place += 4) {
        digits.insert(digits.size() - place, L",");
    }
    return digits;
}

std::wstring registry_type_name(DWORD type) {
    switch (type) {
    case REG_NONE:
        return L"REG_NONE";
    case REG_SZ:
        return L"REG_SZ";
    case REG_EXPAND_SZ:
        return L"REG_EXPAND_SZ";
    case REG_BINARY:
        return L"REG_BINARY";
    case REG_DWORD:
        return L"REG_DWORD";
    case REG_MULTI_SZ:
        return L"REG_MULTI_SZ";
    case REG_QWORD:
        return L"REG_QWORD";
    default:
        return L"type " + std::to_wstring(type);
    }
}

std::wstring padded(std::wstring_view text, size_t width) {
    std::wstring result(text);
    if (result.size() < width) {
        result.append(width - result.size(), L' ');
    }
    return result;
}

std::wstring padded_left(std::wstring_view text, size_t width) {
    std::wstring result(text);
    if (result.size() < width) {
        result.insert(0, width - result.size(), L' ');
    }
    return result;
}
