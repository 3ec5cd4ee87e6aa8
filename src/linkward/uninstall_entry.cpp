#include "linkward/uninstall_entry.h"

#include <string>

#include "common/product_config.h"
#include "common/registry.h"
#include "linkward/locations.h"
#include "linkward/product.h"

bool register_linkward_arp(const ProgressFn& progress) {
    const std::wstring install_dir = linkward_install_dir();
    // Unquoted on purpose although it holds blanks: what reads the entry takes the text as it stands.
    const std::wstring installer_copy = linkward_installer_copy();

    const auto set = [](const wchar_t* name, const std::wstring& text) {
        set_hklm_string(linkward_uninstall_key, name, text);
    };
    set(L"DisplayName", linkward_display_name);
    set(L"UninstallString", installer_copy + L" --uninstall-gui");
    set(L"QuietUninstallString", installer_copy + L" --uninstall");
    set(L"InstallLocation", install_dir);
    set(L"Publisher", L"Brackenfold");
    set(L"DisplayVersion", std::wstring(suite_version));
    set(L"ExtensionId", store_extension_id);

    progress("Registered in Add/Remove Programs", true);
    return true;
}

void remove_linkward_arp() {
    delete_hklm_tree(linkward_uninstall_key);
}
