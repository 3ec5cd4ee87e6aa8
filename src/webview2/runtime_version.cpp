#include "webview2/runtime_version.h"

#include <algorithm>
#include <limits>

namespace {

bool is_digit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

/// Takes the digits at the front of the text; a number that is too large becomes the largest one.
std::uint32_t take_number(std::wstring_view& text) {
    constexpr std::uint64_t largest = std::numeric_limits<std::uint32_t>::max();
    std::uint64_t number = 0;
    while (!text.empty() && is_digit(text.front())) {
        number = std::min(largest, number * 10 + static_cast<std::uint64_t>(text.front() - L'0'));
        text.remove_prefix(1);
    }
    return static_cast<std::uint32_t>(number);
}

} // namespace

std::optional<RuntimeVersion> parse_runtime_version(std::wstring_view text) {
    if (text.empty() || !is_digit(text.front())) {
        return std::nullopt;
    }
    RuntimeVersion version = {};
    for (std::uint32_t& part : version) {
        part = take_number(text);
        if (text.size() < 2 || text[0] != L'.' || !is_digit(text[1])) {
            break;
        }
        text.remove_prefix(1);
    }
    return version;
}

bool is_supported_version_folder(std::wstring_view folder) {
    const std::size_t backslash = folder.rfind(L'\\');
    if (backslash == std::wstring_view::npos) {
        return false;
    }
    const auto version = parse_runtime_version(folder.substr(backslash + 1));
    return version.has_value() && *version >= oldest_supported_runtime;
}
