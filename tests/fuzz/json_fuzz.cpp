// Fuzzer for the two JSON functions, which read what the page sends. Built for
// the machine that it runs on, with sanitizers (see tools/checks/fuzz).

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "common/json.h"

namespace {

/// What json_escape promises, read backwards.
std::string unescape(const std::string& text) {
    std::string plain;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"') {
            std::abort(); // a bare quote would end the JSON string early
        }
        if (text[i] == '\\' && (++i == text.size() || (text[i] != '\\' && text[i] != '"'))) {
            std::abort();
        }
        plain += text[i];
    }
    return plain;
}

/// The field reader once more, byte by byte and without the library's searches.
std::string read_field_slowly(const std::string& json, const std::string& key) {
    size_t i = 0;
    for (;; ++i) {
        if (i + key.size() + 3 > json.size()) {
            return "";
        }
        bool found = json[i] == '"' && json[i + key.size() + 1] == '"' && json[i + key.size() + 2] == ':';
        for (size_t k = 0; found && k < key.size(); ++k) {
            found = json[i + 1 + k] == key[k];
        }
        if (found) {
            break;
        }
    }
    i += key.size() + 3;
    while (i < json.size() && (json[i] == ' ' || json[i] == '\t')) {
        ++i;
    }
    const bool quoted = i < json.size() && json[i] == '"';
    std::string value;
    for (i += quoted ? 1 : 0; i < json.size(); ++i) {
        const char c = json[i];
        if (quoted ? c == '"' : c == ',' || c == '}' || c == ' ' || c == '\t' || c == '\n') {
            return value;
        }
        value += c;
    }
    return quoted ? "" : value;
}

void expect(bool condition) {
    if (!condition) {
        std::abort();
    }
}

} // namespace

/// The first byte says how long the key is, the key follows, and the rest is the message.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    expect(unescape(json_escape(input)) == input);

    for (const char* const known_key : {"action", "fwc", "lw", "index"}) {
        expect(json_get_field(input, known_key) == read_field_slowly(input, known_key));
    }
    if (!input.empty()) {
        const size_t key_size = static_cast<unsigned char>(input[0]) % 16;
        const std::string key = input.substr(1, key_size);
        const std::string json = input.substr(1 + key.size());
        expect(json_get_field(json, key) == read_field_slowly(json, key));
    }
    return 0;
}
