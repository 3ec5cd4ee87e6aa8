#include "runs/windowless_runs.h"

#include "browsers/closing.h"
#include "console/install.h"
#include "console/uninstall.h"
#include "linkward/install.h"
#include "linkward/uninstall.h"
#include "runs/progress.h"

int run_windowless_install() {
    close_browsers(silent_progress);
    const bool console_installed = install_fwc(silent_progress);
    const bool linkward_installed = install_linkward(silent_progress);
    return console_installed && linkward_installed ? 0 : 1;
}

int run_windowless_uninstall() {
    close_browsers(silent_progress);
    uninstall_fwc(silent_progress);
    return uninstall_linkward(silent_progress);
}
