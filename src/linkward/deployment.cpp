#include "linkward/deployment.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include "common/file_identity.h"
#include "common/files.h"
#include "common/installation_medium.h"
#include "common/paths.h"
#include "common/pending_operations.h"
#include "common/system_places.h"
#include "common/text.h"
#include "linkward/locations.h"

namespace {

/// Files of the hardening console, which installs from the same source folder.
constexpr std::array<const wchar_t*, 2> excluded_deploy_files = {fwc_program_name, fwc_loader_name};

constexpr char key_extension[] = ".pem";
constexpr char bloom_filter_extension[] = ".vybf";
constexpr char package_extension[] = ".crx";

bool is_excluded(const std::wstring& name) {
    return std::ranges::any_of(excluded_deploy_files,
                               [&](const wchar_t* excluded) { return to_lower(name) == to_lower(excluded); });
}

bool is_left_out(const std::wstring& name, const std::wstring& installer_name) {
    const std::string extension = lower_extension(name);
    return name == installer_name || is_excluded(name) || extension == key_extension ||
           extension == bloom_filter_extension;
}

/// Copies one entry to its place. Returns whether it was a plain file, which counts.
bool deploy_entry(const FolderEntry& entry, const std::wstring& install_dir) {
    if (entry.is_directory) {
        copy_folder_over(entry.path, join_path(install_dir, entry.name));
        return false;
    }
    const std::wstring folder =
        lower_extension(entry.name) == package_extension ? linkward_extension_dir() : install_dir;
    copy_file_over(entry.path, join_path(folder, entry.name));
    return true;
}

/// Copies everything but the bloom filters. Returns how many plain files were copied.
std::uint64_t deploy_entries(const std::wstring& source, const std::wstring& install_dir,
                             const ProgressFn& progress) {
    const std::wstring installer_name = file_name_of(running_program_path());
    create_folders(linkward_extension_dir());
    std::uint64_t deployed_count = 0;
    for (const FolderEntry& entry : list_folder(source)) {
        if (is_left_out(entry.name, installer_name)) {
            continue;
        }
        try {
            if (deploy_entry(entry, install_dir)) {
                ++deployed_count;
            }
        } catch (const std::exception& error) {
            progress("Warning: failed to copy " + to_ansi(entry.name) + " (" + error.what() + ")", false);
        }
    }
    return deployed_count;
}

bool is_bloom_filter(const FolderEntry& entry) {
    return !entry.is_directory && lower_extension(entry.name) == bloom_filter_extension;
}

void copy_bloom_filter(const FolderEntry& entry) {
    copy_file_over(entry.path, join_path(linkward_programdata_dir(), entry.name));
}

void report_bloom_filter(const ProgressFn& progress) {
    progress("Deployed bloom filter to ProgramData", true);
}

void deploy_bloom_filters(const std::wstring& source, const ProgressFn& progress) {
    for (const FolderEntry& entry : list_folder(source)) {
        if (!is_bloom_filter(entry)) {
            continue;
        }
        try {
            copy_bloom_filter(entry);
        } catch (const std::exception& error) {
            progress(std::string("Warning: bloom filter deploy failed: ") + error.what(), false);
            continue;
        }
        // Not guarded: a report that fails is no failed copy.
        report_bloom_filter(progress);
    }
}

/// The installed copy of the installer was started to install again: only the data folder wants its files.
void deploy_from_install_dir(const std::wstring& install_dir, const ProgressFn& progress) {
    progress("Files already in install directory", true);
    for (const FolderEntry& entry : list_folder(install_dir)) {
        if (!is_bloom_filter(entry)) {
            continue;
        }
        try {
            copy_bloom_filter(entry);
            report_bloom_filter(progress);
        } catch (const std::exception&) {
            // The data folder keeps the filter that it has.
        }
    }
}

void copy_installer() {
    const std::wstring installer = running_program_path();
    const std::wstring copy = linkward_installer_copy();
    if (installer == copy) {
        return;
    }
    try {
        copy_file_over(installer, copy);
    } catch (const std::exception&) {
        // Without it the product works all the same; only Add/Remove Programs would miss it.
    }
}

} // namespace

bool deploy_linkward_files(const std::wstring& source, const ProgressFn& progress) {
    const std::wstring install_dir = linkward_install_dir();
    try {
        create_folders(install_dir);
        create_folders(linkward_log_dir());
        if (is_same_entry(source, install_dir)) {
            deploy_from_install_dir(install_dir, progress);
            return true;
        }
        const std::uint64_t deployed_count = deploy_entries(source, install_dir, progress);
        deploy_bloom_filters(source, progress);
        copy_installer();
        progress("Deployed " + std::to_string(deployed_count) + " files", true);
        return true;
    } catch (const std::exception& error) {
        progress(std::string("File copy failed: ") + error.what(), false);
        return false;
    }
}

void remove_linkward_files(const ProgressFn& progress) {
    const std::wstring install_dir = linkward_install_dir();
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

void remove_linkward_data() {
    remove_tree_if_possible(linkward_programdata_dir());
}
