#include "ui/protocol.h"

#include <cstddef>

#include "common/json.h"

namespace {

std::string report_message(const char* action, const std::string& step, bool ok) {
    return std::string(R"({"action":")") + action + R"(","step":")" + json_escape(step) + R"(","ok":)" +
           (ok ? "true" : "false") + "}";
}

} // namespace

std::string percent_message(int percent) {
    return R"({"action":"pct","v":)" + std::to_string(percent) + "}";
}

std::string progress_message(const std::string& step, bool ok) {
    return report_message("progress", step, ok);
}

std::string uninstall_progress_message(const std::string& step, bool ok) {
    return report_message("uninstall_progress", step, ok);
}

std::string browsers_detected_message(const std::vector<std::string>& names) {
    // Appended by hand: a string stream would bring the whole of the library's locales along.
    std::string message = R"({"action":"browsers_detected","browsers":[)";
    for (std::size_t i = 0; i < names.size(); ++i) {
        message += i == 0 ? "" : ",";
        message += R"({"name":")" + names[i] + R"(","index":)" + std::to_string(i) + "}";
    }
    return message + "]}";
}

std::string webstore_opened_message(int index) {
    return R"({"action":"webstore_opened","index":)" + std::to_string(index) + "}";
}
