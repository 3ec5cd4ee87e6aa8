#include "console/files.h"

#include <string>

#include "common/file_error.h"
#include "common/files.h"
#include "common/installation_medium.h"
#include "common/paths.h"
#include "common/pending_operations.h"
#include "common/system_places.h"
#include "common/text.h"
#include "console/product.h"

namespace {

bool deploy_file(const wchar_t* name, const ProgressFn& progress) {
    const std::string shown_name = to_utf8(name);
    try {
        copy_file_over(join_path(install_source_dir(), name), join_path(fwc_install_dir(), name));
    } catch (const FileError& error) {
        progress("Failed to copy " + shown_name + ": " + error.what(), false);
        return false;
    }
    progress("Deployed " + shown_name, true);
    return true;
}

void copy_updater() {
    try {
        copy_file_over(running_program_path(), join_path(fwc_install_dir(), fwc_updater_name));
    } catch (const std::exception&) {
        // The console works without its updater, and a reinstallation may be running from that very file.
    }
}

} // namespace

bool deploy_fwc_files(const ProgressFn& progress) {
    try {
        create_folders(fwc_install_dir());
    } catch (const FileError& error) {
        progress(std::string("Failed to create FWC directory: ") + error.what(), false);
        return false;
    }
    if (!deploy_file(fwc_program_name, progress)) {
        return false;
    }
    deploy_file(fwc_loader_name, progress);
    copy_updater();
    return true;
}

void remove_fwc_files(const ProgressFn& progress) {
    const std::wstring install_dir = fwc_install_dir();
    try {
        if (entry_exists(install_dir)) {
            remove_tree(install_dir);
        }
    } catch (const FileError&) {
        schedule_removal_at_reboot(install_dir);
        progress("FWC files marked for removal on reboot", true);
        return;
    }
    progress("FWC files removed", true);
}
