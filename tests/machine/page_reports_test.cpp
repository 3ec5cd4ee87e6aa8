#include <doctest/doctest.h>
#include <memory>
#include <string>
#include <vector>

#include <windows.h>

#include "before_each_case.h"
#include "intercepted_call.h"
#include "living_blocks.h"
#include "readable.h"
#include "runs/progress.h"
#include "system_threads.h"
#include "ui/page_channel.h"

namespace {

using Texts = std::vector<std::wstring>;

Texts g_received; // by the window procedure, on the test's thread

LRESULT CALLBACK receive(HWND window, UINT message, WPARAM wide, LPARAM text) {
    if (message == 0x8001) {
        CHECK(wide == 0);
        const std::unique_ptr<std::wstring> owned(reinterpret_cast<std::wstring*>(text));
        g_received.push_back(*owned);
        return 0;
    }
    return DefWindowProcW(window, message, wide, text);
}

/// A window for messages only, which needs no display, in the place of the installer's.
class PageWindow {
  public:
    PageWindow() {
        WNDCLASSEXW window_class = {};
        window_class.cbSize = sizeof window_class;
        window_class.lpfnWndProc = receive;
        window_class.lpszClassName = L"PageWindow";
        RegisterClassExW(&window_class);
        window_ =
            CreateWindowExW(0, L"PageWindow", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
        REQUIRE(window_ != nullptr);
        g_main_window = window_;
    }
    PageWindow(const PageWindow&) = delete;
    PageWindow& operator=(const PageWindow&) = delete;
    ~PageWindow() {
        g_main_window = nullptr;
        DestroyWindow(window_);
    }

    /// What has been posted since the last call.
    static Texts received() {
        MSG message = {};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
            DispatchMessageW(&message);
        }
        return std::move(g_received);
    }

    [[nodiscard]] HWND window() const { return window_; }

  private:
    HWND window_ = nullptr;
};

int g_calls = 0; // of the two stand-ins below, on the test's thread
const BeforeEachCase start_anew([] {
    g_received.clear();
    g_calls = 0;
});

int WINAPI counted_conversion(UINT /*code_page*/, DWORD /*flags*/, LPCCH /*text*/, int /*size*/,
                              LPWSTR /*wide*/, int /*length*/) {
    ++g_calls;
    return 0;
}

BOOL WINAPI counted_post(HWND /*window*/, UINT /*message*/, WPARAM /*wide*/, LPARAM /*text*/) {
    ++g_calls;
    return FALSE;
}

} // namespace

TEST_CASE("texts and reports reach the window in their order as UTF-16 JSON") {
    {
        const PageWindow page;
        post_to_page("{\"action\":\"one\"}");
        post_to_page("");
        post_to_page("caf\xC3\xA9 \xE6\x97\xA5 \xF0\x9F\x94\x92");
        post_to_page("bad \xFF byte");
        post_to_page(std::string("nul \0 inside", 12));
        CHECK(PageWindow::received() == Texts{L"{\"action\":\"one\"}", L"", L"caf\u00E9 \u65E5 \U0001F512",
                                              L"bad \uFFFD byte", std::wstring(L"nul \0 inside", 12)});
        run_on_another_thread([] {
            for (int i = 0; i < 100; ++i) {
                post_to_page(std::to_string(i));
            }
        });
        const Texts texts = PageWindow::received();
        REQUIRE(texts.size() == 100);
        for (size_t i = 0; i < texts.size(); ++i) {
            CHECK(texts[i] == std::to_wstring(i));
        }
        // Many at once from the window's own thread.
        Texts expected = {L"{\"text\":\"\u00E9\u2014\U0001F6E1\"}", L""};
        post_to_page("{\"text\":\"\xC3\xA9\xE2\x80\x94\xF0\x9F\x9B\xA1\"}");
        post_to_page("");
        for (int i = 0; i < 500; ++i) {
            post_to_page(std::to_string(i));
            expected.push_back(std::to_wstring(i));
        }
        CHECK(PageWindow::received() == expected);
    }
    {
        const PageWindow page;
        install_reporter("Service installed and started", true);
        install_reporter("Failed \"x\" in C:\\a\\b", false);
        install_reporter("", true);
        install_reporter("line\nfeed", false);
        uninstall_reporter("Files removed", true);
        uninstall_reporter("caf\xC3\xA9", false);
        silent_progress("nobody hears this", false);
        CHECK(PageWindow::received() ==
              Texts{L"{\"action\":\"progress\",\"step\":\"Service installed and started\",\"ok\":true}",
                    L"{\"action\":\"progress\",\"step\":\"Failed \\\"x\\\" in C:\\\\a\\\\b\",\"ok\":false}",
                    L"{\"action\":\"progress\",\"step\":\"\",\"ok\":true}",
                    L"{\"action\":\"progress\",\"step\":\"line\nfeed\",\"ok\":false}",
                    L"{\"action\":\"uninstall_progress\",\"step\":\"Files removed\",\"ok\":true}",
                    L"{\"action\":\"uninstall_progress\",\"step\":\"caf\u00E9\",\"ok\":false}"});
        uninstall_reporter("", false);
        silent_progress("nor this", true);
        CHECK(PageWindow::received() ==
              Texts{L"{\"action\":\"uninstall_progress\",\"step\":\"\",\"ok\":false}"});
    }
}

TEST_CASE("without a window reports vanish and none waits for one") {
    {
        const InterceptedCall conversion("MultiByteToWideChar", counted_conversion);
        const InterceptedCall post("PostMessageW", counted_post);
        const std::string text = "a text that is too long to live inside a string object";
        const long taken_before = blocks_taken();
        post_to_page(text);
        const long taken = blocks_taken() - taken_before;
        CHECK(taken == 0);
        install_reporter("early", true);
        CHECK(g_calls == 0);
    }
    const PageWindow page;
    CHECK(PageWindow::received().empty());
    // A window that has gone meanwhile.
    DestroyWindow(page.window());
    install_reporter("late", true);
    uninstall_reporter("late", false);
    // Nor does the thread's queue hold them, without a window.
    MSG message = {};
    CHECK(PeekMessageW(&message, nullptr, 0x8001, 0x8001, PM_REMOVE) == FALSE);
    CHECK(PageWindow::received().empty());
}
