#include "runs/progress.h"

#include "ui/page_channel.h"
#include "ui/protocol.h"

void install_reporter(const std::string& message, bool ok) {
    post_to_page(progress_message(message, ok));
}

void uninstall_reporter(const std::string& message, bool ok) {
    post_to_page(uninstall_progress_message(message, ok));
}

void silent_progress(const std::string& /*message*/, bool /*ok*/) {
}
