#include "linkward/uninstall.h"

#include <array>
#include <filesystem>
#include <string>

#include "browsers/catalogue.h"
#include "browsers/extension_policies.h"
#include "common/files.h"
#include "common/product_config.h"
#include "common/registry.h"
#include "common/shell_folder.h"
#include "linkward/locations.h"
#include "linkward/native_messaging.h"
#include "linkward/product.h"
#include "linkward/service.h"

namespace fs = std::filesystem;

namespace {

/// Every id that the extension ever had, in cleanup order.
constexpr std::array<const wchar_t*, 3> extension_ids = {direct_extension_id, retired_extension_id,
                                                         store_extension_id};

void clean_browser_policies(const ProgressFn& progress) {
    for (const BrowserInfo& browser : known_browsers) {
        for (const wchar_t* const extension_id : extension_ids) {
            clean_extension_policies(browser, extension_id);
        }
    }
    progress("Extension policies cleaned", true);
}

void remove_tree_silently(const fs::path& path) {
    try {
        if (entry_exists(path)) {
            remove_tree(path);
        }
    } catch (const std::exception&) {
        // What cannot be removed stays; the removal goes on and has no words for it.
    }
}

void clean_firefox() {
    // The whole key goes, with the add-ons that other products listed there.
    delete_hklm_tree(L"SOFTWARE\\Policies\\Mozilla\\Firefox\\Extensions\\Install");
    remove_tree_silently(fs::path(program_files_dir()) / L"Mozilla Firefox" / L"distribution" /
                         L"extensions" / std::wstring(firefox_addon_id));
}

void remove_files(const fs::path& install_dir, const ProgressFn& progress) {
    try {
        remove_tree(install_dir);
    } catch (const std::exception&) {
        // Among what is in use may be the installer copy that runs this very removal.
        schedule_removal_at_reboot(install_dir);
        progress("Files marked for removal on reboot", true);
        return;
    }
    progress("Files removed", true);
}

} // namespace

int uninstall_linkward(const ProgressFn& progress) {
    const fs::path install_dir = linkward_install_dir();
    remove_linkward_service(progress);
    remove_native_messaging_hosts(progress);
    clean_browser_policies(progress);
    clean_firefox();
    delete_hklm_tree(linkward_uninstall_key);
    remove_files(install_dir, progress);
    remove_tree_silently(linkward_programdata_dir());
    progress("Uninstall complete", true);
    return 0;
}
