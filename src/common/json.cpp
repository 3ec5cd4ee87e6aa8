#include "common/json.h"

std::string json_escape(const std::string& text) {
    std::string escaped;
    escaped.reserve(text.size() + 16);
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            escaped += '\\';
        }
        escaped += c;
    }
    return escaped;
}

std::string json_get_field(const std::string& json, const std::string& key) {
    const std::string pattern = '"' + key + "\":";
    const size_t key_start = json.find(pattern);
    if (key_start == std::string::npos) {
        return {};
    }
    const size_t value_start = json.find_first_not_of(" \t", key_start + pattern.size());
    if (value_start == std::string::npos) {
        return {};
    }
    if (json[value_start] == '"') {
        const size_t closing_quote = json.find('"', value_start + 1);
        if (closing_quote == std::string::npos) {
            return {};
        }
        return json.substr(value_start + 1, closing_quote - value_start - 1);
    }
    // npos, when nothing ends the value, makes it run to the end of the text.
    return json.substr(value_start, json.find_first_of(",} \t\n", value_start) - value_start);
}
