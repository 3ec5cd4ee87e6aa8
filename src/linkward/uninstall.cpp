#include "linkward/uninstall.h"

#include "linkward/browser_cleanup.h"
#include "linkward/deployment.h"
#include "linkward/native_messaging.h"
#include "linkward/service.h"
#include "linkward/uninstall_entry.h"

int uninstall_linkward(const ProgressFn& progress) {
    remove_linkward_service(progress);
    remove_native_messaging_hosts(progress);
    clean_browser_policies(progress);
    clean_firefox();
    remove_linkward_arp();
    remove_linkward_files(progress);
    remove_linkward_data();
    progress("Uninstall complete", true);
    return 0;
}
