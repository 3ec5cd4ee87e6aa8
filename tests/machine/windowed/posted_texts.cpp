#include "posted_texts.h"

#include <doctest/doctest.h>
#include <memory>

#include "ui/page_channel.h"

namespace {

std::string narrow(const std::wstring& text) {
    std::string utf8;
    utf8.resize(text.size() * 3);
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), utf8.data(),
                                         static_cast<int>(utf8.size()), nullptr, nullptr);
    utf8.resize(static_cast<size_t>(size));
    return utf8;
}

std::string text_of(const MSG& message) {
    CHECK(message.message == 0x8001);
    CHECK(message.wParam == 0);
    const std::unique_ptr<std::wstring> text(reinterpret_cast<std::wstring*>(message.lParam));
    return narrow(*text);
}

} // namespace

PageMailbox::PageMailbox()
    : window_(CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr)) {
    REQUIRE(window_ != nullptr);
    g_main_window = window_;
}

PageMailbox::~PageMailbox() {
    take();
    g_main_window = nullptr;
    DestroyWindow(window_);
}

std::vector<std::string> PageMailbox::take() {
    std::vector<std::string> texts;
    MSG message = {};
    while (PeekMessageW(&message, window_, WM_APP, 0xBFFF, PM_REMOVE) != FALSE) {
        texts.push_back(text_of(message));
    }
    return texts;
}

std::vector<std::string> PageMailbox::take_until(const std::string& last) {
    const UINT_PTR timer = SetTimer(window_, 1, 60000, nullptr);
    std::vector<std::string> texts;
    MSG message = {};
    while (GetMessageW(&message, window_, 0, 0) > 0 && message.message != WM_TIMER) {
        if (message.message == WM_APP_POST_JSON) {
            texts.push_back(text_of(message));
            if (texts.back() == last) {
                break;
            }
        }
    }
    KillTimer(window_, timer);
    return texts;
}
