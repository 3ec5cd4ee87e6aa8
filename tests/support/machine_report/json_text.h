// JSON put together from parts that are JSON already. All of it is UTF-8.
#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

std::string json_string(std::string_view text_utf8);
std::string json_string(std::wstring_view text);
std::string json_boolean(bool value);

/// Names, which need no escapes, and values.
std::string json_object(std::initializer_list<std::pair<const char*, std::string>> fields);

template<typename Items, typename ToJson>
std::string json_list(const Items& items, ToJson to_json) {
    std::string result;
    for (const auto& item : items) {
        result += (result.empty() ? "" : ",") + std::string(to_json(item));
    }
    return "[" + result + "]";
}

template<typename Item, typename ToJson>
std::string json_or_null(const std::optional<Item>& item, ToJson to_json) {
    return item ? to_json(*item) : "null";
}
