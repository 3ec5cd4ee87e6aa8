#include "app/page_commands.h"

#include <objbase.h>

#include "app/store_pages.h"
#include "common/json.h"
#include "common/owned.h"
#include "common/text.h"
#include "runs/install_run.h"
#include "runs/uninstall_run.h"
#include "ui/page_channel.h"
#include "ui/protocol.h"

namespace {

bool is_true(const std::string& json, const char* field) {
    return json_get_field(json, field) == "true";
}

/// Nobody waits for a run and nothing stops a second one; the page leaves the screen that started it.
void start_run(LPTHREAD_START_ROUTINE run) {
    const OwnedHandle thread(CreateThread(nullptr, 0, run, nullptr, 0, nullptr));
}

void start_installation(const std::string& json) {
    g_install_console = is_true(json, field_console);
    g_install_linkward = is_true(json, field_linkward);
    start_run(install_thread_proc);
}

void open_store_page_for_browser(const std::string& json) {
    const int index = std::stoi(json_get_field(json, field_index));
    if (index >= 0 && static_cast<size_t>(index) < g_detected_browsers.size()) {
        open_store_page(g_detected_browsers[static_cast<size_t>(index)].exe_path);
    }
    post_to_page(webstore_opened_message(index));
}

} // namespace

HRESULT on_web_message(HWND /*window*/, ICoreWebView2* /*sender*/,
                       ICoreWebView2WebMessageReceivedEventArgs* args) {
    LPWSTR text = nullptr;
    if (FAILED(args->TryGetWebMessageAsString(&text)) || text == nullptr) {
        return S_OK;
    }
    carry_out_page_message(to_utf8(text));
    CoTaskMemFree(text);
    return S_OK;
}

void carry_out_page_message(const std::string& json) {
    const std::string action = json_get_field(json, field_action);
    if (action == action_install) {
        start_installation(json);
    } else if (action == action_open_webstore) {
        open_store_page_for_browser(json);
    } else if (action == action_open_amo) {
        open_firefox_addon_page();
        post_to_page(amo_opened_message);
    } else if (action == action_close) {
        PostMessageW(g_main_window, WM_CLOSE, 0, 0);
    } else if (action == action_uninstall) {
        start_run(uninstall_thread_proc);
    }
}
