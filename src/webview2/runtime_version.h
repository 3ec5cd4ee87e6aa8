#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

using RuntimeVersion = std::array<std::uint32_t, 4>;

/// The first runtime whose interfaces are the published ones.
inline constexpr RuntimeVersion oldest_supported_runtime = {86, 0, 616, 0};

/// Reads up to four decimal parts divided by dots; parts that are missing are 0, and what follows the
/// last readable part is ignored. Nothing when the text does not begin with a digit.
std::optional<RuntimeVersion> parse_runtime_version(std::wstring_view text);

/// True when the last part of the path is the version of a runtime that we can use. A path that ends
/// in a backslash has no last part.
bool is_supported_version_folder(std::wstring_view folder);
