#include "pending_lists.h"

#include <doctest/doctest.h>

#include "common/owned.h"
#include "test_registry.h"

namespace {

std::optional<RegistryValue> value_below(const std::wstring& key, const wchar_t* name) {
    for (const RegistryValue& value : values_of(key)) {
        if (value.name == name) {
            return value;
        }
    }
    return std::nullopt;
}

void store_below(const std::wstring& key, const wchar_t* name, const std::wstring& list) {
    set_bytes(key, name, REG_MULTI_SZ, list.data(), list.size() * sizeof(wchar_t));
}

} // namespace

std::wstring list_of(Texts texts) {
    std::wstring list;
    for (const wchar_t* const text : texts) {
        list += text;
        list += L'\0';
    }
    return list + L'\0';
}

void store_list(const wchar_t* name, const std::wstring& list) {
    store_below(session_manager_key, name, list);
}

void delete_list(const wchar_t* name) {
    OwnedKey key;
    REQUIRE(RegOpenKeyExW(HKEY_LOCAL_MACHINE, session_manager_key.c_str(), 0, KEY_SET_VALUE, key.out()) ==
            ERROR_SUCCESS);
    RegDeleteValueW(key.get(), name);
}

std::optional<RegistryValue> stored_list(const wchar_t* name) {
    return value_below(session_manager_key, name);
}

void check_list(const wchar_t* name, const std::wstring& list) {
    const std::wstring wanted_key = L"SOFTWARE\\Wanted list";
    store_below(wanted_key, name, list);
    const std::optional<RegistryValue> value = stored_list(name);
    REQUIRE(value.has_value());
    CHECK(*value == *value_below(wanted_key, name));
}

void check_list(const wchar_t* name, Texts texts) {
    check_list(name, list_of(texts));
}

void schedule_deletion(const wchar_t* path) {
    REQUIRE(MoveFileExW(path, nullptr, MOVEFILE_DELAY_UNTIL_REBOOT) != FALSE);
}

void schedule_move(const wchar_t* from, const wchar_t* to, DWORD flags) {
    REQUIRE(MoveFileExW(from, to, MOVEFILE_DELAY_UNTIL_REBOOT | flags) != FALSE);
}
