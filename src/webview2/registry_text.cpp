#include "webview2/registry_text.h"

namespace {

// A value that keeps growing between two reads is given up.
constexpr int max_reads = 4;

std::wstring text_of_value(HKEY key, const wchar_t* name) {
    std::wstring text(MAX_PATH, L'\0');
    for (int read = 0; read < max_reads; ++read) {
        auto size_bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
        const LSTATUS status =
            RegQueryValueExW(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(text.data()), &size_bytes);
        const std::size_t length = size_bytes / sizeof(wchar_t);
        if (status == ERROR_SUCCESS) {
            text.resize(length);
            // The stored data may or may not hold a terminator, or more than one text.
            return text.substr(0, text.find(L'\0'));
        }
        if (status != ERROR_MORE_DATA) {
            break;
        }
        text.resize(length + 1);
    }
    return {};
}

} // namespace

std::wstring read_registry_text(HKEY root, const wchar_t* path, REGSAM view, const wchar_t* name) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path, 0, KEY_READ | view, &key) != ERROR_SUCCESS) {
        return {};
    }
    std::wstring text = text_of_value(key, name);
    RegCloseKey(key);
    return text;
}
