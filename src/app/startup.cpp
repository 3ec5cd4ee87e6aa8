#include "app/startup.h"

#include "app/command_line.h"
#include "app/elevation.h"
#include "app/modes.h"
#include "app/process_hardening.h"
#include "common/installation_medium.h"
#include "common/quiet_thread.h"
#include "common/system_places.h"

int run_installer(HINSTANCE instance) noexcept {
    restrict_search_paths();
    make_thread_quiet();
    // The result is not checked: at worst the system scales the window.
    SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);
    g_source_dir = folder_of_program(running_program_path());

    const auto arguments = split_command_line(GetCommandLineW());
    const Options options = arguments ? parse_options(*arguments) : Options();
    if (options.source_dir) {
        g_source_dir = *options.source_dir;
    }
    if (!is_elevated()) {
        // A second instance without rights would only start a third one, and that a fourth.
        if (arguments && !is_second_instance()) {
            relaunch_elevated(*arguments);
        }
        // The outcome of the second instance is its own.
        return 0;
    }
    return run_elevated(instance, options);
}
