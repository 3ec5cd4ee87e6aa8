#include <doctest/doctest.h>
#include <initializer_list>

#include "app/window.h"

namespace {

SIZE client_size(UINT dpi) {
    const SIZE window = main_window_size(dpi);
    RECT frame = {};
    AdjustWindowRectExForDpi(&frame, 0x00CA0000, FALSE, 0, dpi);
    return {window.cx - (frame.right - frame.left), window.cy - (frame.bottom - frame.top)};
}

} // namespace

TEST_CASE("the window has a caption with close and minimise buttons and nothing to resize it") {
    CHECK(main_window_style == 0x00CA0000);
}

TEST_CASE("the client area has 920 by 640 device-independent pixels at every DPI, rounded to the nearest") {
    struct Case {
        UINT dpi;
        LONG width;
        LONG height;
    };
    for (const Case& c : {Case{96, 920, 640},
                          {120, 1150, 800},
                          {144, 1380, 960},
                          {168, 1610, 1120},
                          {192, 1840, 1280},
                          {97, 930, 647}}) {
        CAPTURE(c.dpi);
        CHECK(client_size(c.dpi).cx == c.width);
        CHECK(client_size(c.dpi).cy == c.height);
    }
}
