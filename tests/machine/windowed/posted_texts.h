#pragma once

#include <string>
#include <vector>

#include <windows.h>

/// A window without contents that takes the installer window's place in `g_main_window`, so that a test reads
/// what is posted to the page instead of a view.
class PageMailbox {
  public:
    PageMailbox();
    PageMailbox(const PageMailbox&) = delete;
    PageMailbox& operator=(const PageMailbox&) = delete;
    ~PageMailbox();

    /// Takes all texts that have been posted, in their order, as UTF-8.
    std::vector<std::string> take();

    /// Waits until a text equal to `last` has been posted, a minute at most, and takes all up to it.
    std::vector<std::string> take_until(const std::string& last);

    [[nodiscard]] HWND window() const { return window_; }

  private:
    HWND window_;
};
