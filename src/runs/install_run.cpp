#include "runs/install_run.h"

#include <string>
#include <utility>

#include "browsers/closing.h"
#include "common/quiet_thread.h"
#include "common/text.h"
#include "console/install.h"
#include "linkward/install.h"
#include "runs/progress.h"
#include "ui/page_channel.h"
#include "ui/protocol.h"

bool g_install_console = false;
bool g_install_linkward = false;
std::vector<DetectedBrowser>& g_detected_browsers = *new std::vector<DetectedBrowser>;

namespace {

void run_console_install(bool linkward_follows) {
    post_to_page(status_installing_console);
    install_fwc(install_reporter);
    post_to_page(percent_message(linkward_follows ? 40 : 90));
}

std::string browser_list_message(const std::vector<DetectedBrowser>& detected) {
    std::vector<std::string> names;
    names.reserve(detected.size());
    for (const DetectedBrowser& browser : detected) {
        names.push_back(to_utf8(browser.info->display_name));
    }
    return browsers_detected_message(names);
}

void run_linkward_install() {
    post_to_page(status_installing_linkward);
    install_linkward(install_reporter);
    post_to_page(percent_message(85));

    post_to_page(status_detecting_browsers);
    std::vector<DetectedBrowser> detected = detect_browsers();
    const std::string message = browser_list_message(detected);
    // The page may refer to the list as soon as it has the message.
    g_detected_browsers = std::move(detected);
    post_to_page(percent_message(100));
    post_to_page(message);
}

} // namespace

DWORD WINAPI install_thread_proc(void* /*unused*/) noexcept {
    make_thread_quiet();
    const bool with_console = g_install_console;
    const bool with_linkward = g_install_linkward;

    post_to_page(status_closing_browsers);
    close_browsers(install_reporter);
    post_to_page(percent_message(5));
    if (with_console) {
        run_console_install(with_linkward);
    }
    if (with_linkward) {
        run_linkward_install();
    } else {
        post_to_page(percent_message(100));
        post_to_page(install_complete_message);
    }
    return 0;
}
