#include "linkward/install.h"

#include "common/installation_medium.h"
#include "common/pending_operations.h"
#include "linkward/deployment.h"
#include "linkward/locations.h"
#include "linkward/native_messaging.h"
#include "linkward/service.h"
#include "linkward/uninstall_entry.h"

bool install_linkward(const ProgressFn& progress) {
    // A removal may have left the folder's files to the next start of Windows.
    cancel_pending_deletions_below(linkward_install_dir());
    const bool deployed = deploy_linkward_files(install_source_dir(), progress);
    const bool service_registered = register_linkward_service(progress);
    register_native_messaging_hosts(progress);
    return register_linkward_arp(progress) && deployed && service_registered;
}
