#include "json_text.h"

#include "text_forms.h"

std::string json_string(std::string_view text_utf8) {
    std::string result = "\"";
    for (const char byte : text_utf8) {
        if (byte == '"' || byte == '\\') {
            result += '\\';
            result += byte;
        } else if (static_cast<unsigned char>(byte) < 0x20) {
            constexpr std::string_view digits = "0123456789abcdef";
            result += "\\u00";
            result += digits[static_cast<size_t>(byte) >> 4];
            result += digits[static_cast<size_t>(byte) & 15];
        } else {
            result += byte;
        }
    }
    return result + '"';
}

std::string json_string(std::wstring_view text) {
    return json_string(std::string_view(utf8_from_wide(text)));
}

std::string json_boolean(bool value) {
    return value ? "true" : "false";
}

std::string json_object(std::initializer_list<std::pair<const char*, std::string>> fields) {
    std::string result;
    for (const auto& [name, value] : fields) {
        result += (result.empty() ? "\"" : ",\"") + std::string(name) + "\":" + value;
    }
    return "{" + result + "}";
}
