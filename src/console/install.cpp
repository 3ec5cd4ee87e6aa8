#include "console/install.h"

#include "console/files.h"
#include "console/shortcut.h"
#include "console/uninstall_entry.h"
#include "console/update_task.h"

bool install_fwc(const ProgressFn& progress) {
    if (!deploy_fwc_files(progress)) {
        return false;
    }
    create_desktop_shortcut(progress);
    schedule_weekly_update(progress);
    register_fwc_arp(progress);
    progress("FWC installation complete", true);
    return true;
}
