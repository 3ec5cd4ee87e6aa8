#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

/// A picture with 4 bytes for each pixel: blue, green, red, unused; the top row first.
struct FrameImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;
};

/// Reads a PNG file with the system's own decoder. An empty picture when that fails. COM must be
/// initialised on the thread.
FrameImage decode_png(std::string_view file);
