#include "app/modes.h"

#include <objbase.h>

#include "app/webview_host.h"
#include "app/window.h"
#include "runs/windowless_runs.h"
#include "ui/page_channel.h"

int run_window(HINSTANCE instance) {
    // Cannot fail on a thread that is new to COM.
    static_cast<void>(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    create_main_window(instance);
    init_webview(g_main_window);
    const int exit_code = run_message_loop();
    CoUninitialize();
    return exit_code;
}

int run_elevated(HINSTANCE instance, const Options& options) {
    if (options.uninstall) {
        return run_windowless_uninstall();
    }
    if (options.install || options.silent) {
        return run_windowless_install();
    }
    g_uninstall_gui = options.uninstall_gui;
    return run_window(instance);
}
