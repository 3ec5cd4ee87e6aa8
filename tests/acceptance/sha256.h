#pragma once

#include <string>
#include <string_view>

/// In hexadecimal. Throws std::runtime_error when Windows cannot compute it.
std::string sha256(std::string_view bytes);
