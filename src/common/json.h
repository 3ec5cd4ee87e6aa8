#pragma once

#include <string>

/// Makes a text safe for the inside of a JSON string in the limited way that page and program agreed on: a
/// double quote and a backslash get a backslash in front, every other byte passes through, control characters
/// included.
std::string json_escape(const std::string& text);

/// Reads the raw text of one field of a flat JSON object, without parsing it: the first `"key":` anywhere in
/// the text counts. A quoted value comes back without its quotes and with its escapes as they stand; it ends
/// at the next double quote, escaped or not. Any other value ends before a comma, closing brace, blank, tab
/// or line feed. Returns an empty text when the key or its value cannot be read. Bytes are UTF-8.
std::string json_get_field(const std::string& json, const std::string& key);
