#include "console/uninstall.h"

#include "console/files.h"
#include "console/shortcut.h"
#include "console/uninstall_entry.h"
#include "console/update_task.h"

bool uninstall_fwc(const ProgressFn& progress) {
    remove_weekly_update(progress);
    remove_desktop_shortcut(progress);
    remove_fwc_arp(progress);
    remove_fwc_files(progress);
    progress("FWC uninstall complete", true);
    return true;
}
