#include "webview2/registry_text.h"

#include <algorithm>
#include <utility>

#include "common/owned.h"

namespace {

// A value that keeps growing between two reads is given up.
constexpr int max_reads = 4;

struct StoredText {
    DWORD type = REG_NONE;
    std::wstring text;
};

std::optional<StoredText> text_of_value(HKEY key, const wchar_t* name) {
    StoredText stored;
    std::wstring& text = stored.text;
    text.resize(MAX_PATH);
    for (int read = 0; read < max_reads; ++read) {
        auto size_bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
        const LSTATUS status = RegQueryValueExW(key, name, nullptr, &stored.type,
                                                reinterpret_cast<BYTE*>(text.data()), &size_bytes);
        const std::size_t length = size_bytes / sizeof(wchar_t);
        if (status == ERROR_SUCCESS) {
            text.resize(length);
            // The stored data may or may not hold a terminator, or more than one text.
            text.resize(std::min(text.find(L'\0'), length));
            return stored;
        }
        if (status != ERROR_MORE_DATA) {
            break;
        }
        text.resize(length + 1);
    }
    return std::nullopt;
}

std::optional<StoredText> read_stored_text(HKEY root, const wchar_t* path, REGSAM view, const wchar_t* name) {
    OwnedKey key;
    if (RegOpenKeyExW(root, path, 0, KEY_READ | view, key.out()) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    return text_of_value(key.get(), name);
}

std::wstring expanded(const std::wstring& text) {
    const DWORD size = ExpandEnvironmentStringsW(text.c_str(), nullptr, 0);
    std::wstring result(size, L'\0');
    // Both sizes count the terminator.
    const DWORD written = ExpandEnvironmentStringsW(text.c_str(), result.data(), size);
    result.resize(written != 0 && written <= size ? written - 1 : 0);
    return result;
}

} // namespace

std::wstring read_registry_text(HKEY root, const wchar_t* path, REGSAM view, const wchar_t* name) {
    return read_stored_text(root, path, view, name).value_or(StoredText()).text;
}

std::optional<std::wstring> read_expanded_registry_text(HKEY root, const wchar_t* path, const wchar_t* name) {
    std::optional<StoredText> stored = read_stored_text(root, path, 0, name);
    if (stored && stored->type == REG_SZ) {
        return std::move(stored->text);
    }
    // RegGetValue would expand by itself; Wine's spoils the heap when the text outgrows its place.
    if (stored && stored->type == REG_EXPAND_SZ) {
        return expanded(stored->text);
    }
    return std::nullopt;
}
