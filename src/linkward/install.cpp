#include "linkward/install.h"

#include "common/install_source.h"
#include "linkward/deployment.h"
#include "linkward/native_messaging.h"
#include "linkward/service.h"
#include "linkward/uninstall_entry.h"

bool install_linkward(const ProgressFn& progress) {
    const bool deployed = deploy_linkward_files(install_source_dir(), progress);
    const bool service_registered = register_linkward_service(progress);
    register_native_messaging_hosts(progress);
    return register_linkward_arp(progress) && deployed && service_registered;
}
