#pragma once

#include <string>
#include <string_view>

/// In hexadecimal. Empty when Windows cannot compute it, which it always can.
std::string sha256(std::string_view bytes);
