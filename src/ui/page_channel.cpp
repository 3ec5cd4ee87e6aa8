#include "ui/page_channel.h"

#include "common/text.h"

HWND g_main_window = nullptr;

void post_to_page(const std::string& json) {
    if (g_main_window == nullptr) {
        return;
    }
    auto* const text = new std::wstring(from_utf8(json));
    const auto carried = reinterpret_cast<LPARAM>(text);
    if (PostMessageW(g_main_window, WM_APP_POST_JSON, 0, carried) == FALSE) {
        delete text;
    }
    // Otherwise the receiver deletes it, which the analyzer cannot see.
} // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks)
