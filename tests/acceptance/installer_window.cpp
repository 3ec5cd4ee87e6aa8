#include "installer_window.h"

#include <array>

#include "product_facts.h"

namespace {

constexpr wchar_t area[] = L"window";

HWND window_of(DWORD process_id) {
    for (HWND window = FindWindowExW(nullptr, nullptr, window_class, nullptr); window != nullptr;
         window = FindWindowExW(nullptr, window, window_class, nullptr)) {
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        if (owner == process_id && IsWindowVisible(window) != FALSE) {
            return window;
        }
    }
    return nullptr;
}

Facts window_facts(const std::wstring& shown, const std::wstring& caption, const std::wstring& asked) {
    return {{{area, L"shown"}, shown}, {{area, L"caption"}, caption}, {{area, L"asked to close"}, asked}};
}

} // namespace

Facts see_and_close_window(const RunningProgram& program) {
    HWND window = window_of(program.id);
    while (window == nullptr && program.is_running()) {
        window = window_of(program.id);
    }
    if (window == nullptr) {
        return window_facts(L"no", L"none", L"no");
    }
    std::array<wchar_t, 200> caption = {};
    GetWindowTextW(window, caption.data(), static_cast<int>(caption.size()));
    const bool is_asked = PostMessageW(window, WM_CLOSE, 0, 0) != FALSE;
    return window_facts(L"yes", caption.data(), is_asked ? L"yes" : L"no");
}

Facts expected_window() {
    return window_facts(L"yes", window_caption, L"yes");
}
