#pragma once

#include <string>

/// The whole installer page, markup, styles and script, as the control takes it. Plain ASCII.
std::wstring page_text();

struct OpaqueColor {
    unsigned char red;
    unsigned char green;
    unsigned char blue;
};

/// The page's background, which window and control show before the page is drawn.
inline constexpr OpaqueColor background_color = {8, 12, 20};
