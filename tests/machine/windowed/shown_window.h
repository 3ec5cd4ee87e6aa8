#pragma once

#include "app/window.h"
#include "ui/page_channel.h"

/// The installer window, shown; destroyed at the end of the test.
struct ShownWindow {
    ShownWindow() { create_main_window(GetModuleHandleW(nullptr)); }
    ShownWindow(const ShownWindow&) = delete;
    ShownWindow& operator=(const ShownWindow&) = delete;
    ~ShownWindow() {
        DestroyWindow(g_main_window);
        g_main_window = nullptr;
    }
};
