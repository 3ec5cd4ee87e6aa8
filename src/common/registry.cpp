#include "common/registry.h"

namespace {

bool set_hklm_value(const std::wstring& key_path, const std::wstring& name, DWORD type, const void* data,
                    size_t size_bytes) {
    OwnedKey key;
    if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, key_path.c_str(), 0, nullptr, 0, KEY_SET_VALUE | KEY_WOW64_64KEY,
                        nullptr, key.out(), nullptr) != ERROR_SUCCESS) {
        return false;
    }
    return RegSetValueExW(key.get(), name.empty() ? nullptr : name.c_str(), 0, type,
                          static_cast<const BYTE*>(data), static_cast<DWORD>(size_bytes)) == ERROR_SUCCESS;
}

} // namespace

bool set_hklm_string(const std::wstring& key_path, const std::wstring& name, const std::wstring& text) {
    // The size counts the terminating NUL.
    return set_hklm_value(key_path, name, REG_SZ, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
}

bool set_hklm_dword(const std::wstring& key_path, const std::wstring& name, DWORD number) {
    return set_hklm_value(key_path, name, REG_DWORD, &number, sizeof(number));
}

OwnedKey open_hklm_key(const std::wstring& key_path, REGSAM access) {
    OwnedKey key;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, key_path.c_str(), 0, access | KEY_WOW64_64KEY, key.out()) !=
        ERROR_SUCCESS) {
        return {};
    }
    return key;
}

bool delete_hklm_tree(const std::wstring& key_path) {
    OwnedKey key = open_hklm_key(key_path, KEY_READ | KEY_SET_VALUE | KEY_CREATE_SUB_KEY);
    if (!key) {
        return false;
    }
    // Nothing can be done about contents that may not be deleted: both results are ignored.
    RegDeleteTreeW(key.get(), nullptr);
    key.reset();
    RegDeleteKeyExW(HKEY_LOCAL_MACHINE, key_path.c_str(), KEY_WOW64_64KEY, 0);
    return true;
}
