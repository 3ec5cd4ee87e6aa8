#include "read_registry.h"

#include <cstring>
#include <string_view>

namespace {

HKEY open_key(const std::wstring& path, bool is_32_bit_view) {
    HKEY key = nullptr;
    const REGSAM access = KEY_READ | (is_32_bit_view ? KEY_WOW64_32KEY : KEY_WOW64_64KEY);
    return RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, access, &key) == ERROR_SUCCESS ? key : nullptr;
}

std::wstring wide_from_bytes(const std::vector<BYTE>& data) {
    std::wstring text(data.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), data.data(), text.size() * sizeof(wchar_t));
    return text;
}

std::wstring readable(DWORD type, const std::vector<BYTE>& data) {
    if (type == REG_SZ || type == REG_EXPAND_SZ) {
        std::wstring text = wide_from_bytes(data);
        // One terminator belongs to the value; anything beyond it is worth seeing.
        if (!text.empty() && text.back() == L'\0') {
            text.pop_back();
        }
        return text;
    }
    if (type == REG_DWORD && data.size() == sizeof(DWORD)) {
        DWORD number = 0;
        std::memcpy(&number, data.data(), sizeof number);
        return std::to_wstring(number);
    }
    std::wstring text;
    for (const BYTE byte : data) {
        constexpr std::wstring_view digits = L"0123456789abcdef";
        text += text.empty() ? L"" : L" ";
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

std::vector<RegistryValue> read_values(HKEY key) {
    std::vector<RegistryValue> values;
    DWORD longest_name = 0;
    DWORD longest_data = 0;
    if (RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &longest_name,
                         &longest_data, nullptr, nullptr) != ERROR_SUCCESS) {
        return values;
    }
    std::wstring name(longest_name + 1, L'\0');
    for (DWORD index = 0;; ++index) {
        std::vector<BYTE> data(longest_data);
        auto name_length = static_cast<DWORD>(name.size());
        DWORD data_size = longest_data;
        DWORD type = REG_NONE;
        if (RegEnumValueW(key, index, name.data(), &name_length, nullptr, &type, data.data(), &data_size) !=
            ERROR_SUCCESS) {
            return values;
        }
        data.resize(data_size);
        values.push_back({name.substr(0, name_length), type, readable(type, data)});
    }
}

std::vector<std::wstring> subkey_names(HKEY key) {
    std::vector<std::wstring> names;
    wchar_t name[256] = {};
    DWORD length = 256;
    while (RegEnumKeyExW(key, static_cast<DWORD>(names.size()), name, &length, nullptr, nullptr, nullptr,
                         nullptr) == ERROR_SUCCESS) {
        names.emplace_back(name, length);
        length = 256;
    }
    return names;
}

// Newer versions of Windows put "*" and a digit before a path.
std::wstring without_prefix(const std::wstring& path) {
    const size_t start = path.empty() || path[0] != L'*' ? 0 : path.find_first_not_of(L"0123456789", 1);
    constexpr std::wstring_view prefix = L"\\??\\";
    return start != std::wstring::npos && path.compare(start, prefix.size(), prefix) == 0
               ? path.substr(start + prefix.size())
               : path;
}

void append_moves(HKEY key, const wchar_t* name, std::vector<PendingMove>& moves) {
    DWORD size = 0;
    RegQueryValueExW(key, name, nullptr, nullptr, nullptr, &size);
    std::vector<BYTE> data(size);
    RegQueryValueExW(key, name, nullptr, nullptr, data.data(), &size);

    // Pairs of texts, each with its terminator; an empty second one means deletion, which is
    // why this list cannot be read as an ordinary list of texts. One more terminator ends it.
    std::vector<std::wstring> texts(1);
    for (const wchar_t unit : wide_from_bytes(data)) {
        if (unit == L'\0') {
            texts.emplace_back();
        } else {
            texts.back() += unit;
        }
    }
    for (size_t i = 0; i + 1 < texts.size() && !texts[i].empty(); i += 2) {
        moves.push_back({without_prefix(texts[i]), texts[i + 1]});
    }
}

} // namespace

std::vector<RegistryKey> read_keys(const std::wstring& label, const std::wstring& path, bool is_32_bit_view) {
    std::vector<RegistryKey> keys;
    HKEY key = open_key(path, is_32_bit_view);
    if (key == nullptr) {
        return keys;
    }
    std::vector<RegistryValue> values = read_values(key);
    const std::vector<std::wstring> subkeys = subkey_names(key);
    RegCloseKey(key);
    if (!values.empty()) {
        keys.push_back({label, path, is_32_bit_view, std::move(values)});
    }
    for (const std::wstring& subkey : subkeys) {
        std::wstring path_below = path + L"\\";
        path_below += subkey;
        for (RegistryKey& below : read_keys(label, path_below, is_32_bit_view)) {
            keys.push_back(std::move(below));
        }
    }
    return keys;
}

bool is_empty_key(const std::wstring& path) {
    HKEY key = open_key(path, false);
    if (key == nullptr) {
        return false;
    }
    RegCloseKey(key);
    return read_keys(L"", path, false).empty();
}

std::vector<PendingMove> read_pending_moves() {
    std::vector<PendingMove> moves;
    HKEY key = open_key(L"SYSTEM\\CurrentControlSet\\Control\\Session Manager", false);
    if (key == nullptr) {
        return moves;
    }
    for (const wchar_t* const name : {L"PendingFileRenameOperations", L"PendingFileRenameOperations2"}) {
        append_moves(key, name, moves);
    }
    RegCloseKey(key);
    return moves;
}
