#include "console/install.h"

#include "common/pending_operations.h"
#include "console/files.h"
#include "console/product.h"
#include "console/shortcut.h"
#include "console/uninstall_entry.h"
#include "console/update_task.h"

bool install_fwc(const ProgressFn& progress) {
    // A removal may have left the folder's files to the next start of Windows.
    cancel_pending_deletions_below(fwc_install_dir());
    if (!deploy_fwc_files(progress)) {
        return false;
    }
    create_desktop_shortcut(progress);
    schedule_weekly_update(progress);
    register_fwc_arp(progress);
    progress("FWC installation complete", true);
    return true;
}
