#include "console/uninstall_entry.h"

#include "common/installation_medium.h"
#include "common/paths.h"
#include "common/product_config.h"
#include "common/registry.h"
#include "console/product.h"

namespace {

/// Size shown in the list, in kilobytes; a fixed figure, not measured.
constexpr DWORD estimated_size_kb = 50000;

} // namespace

std::wstring install_date_text(const SYSTEMTIME& date) {
    std::wstring text = L"00000000";
    DWORD rest = date.wYear * 10000UL + date.wMonth * 100UL + date.wDay;
    for (size_t i = text.size(); i > 0; --i, rest /= 10) {
        text[i - 1] = static_cast<wchar_t>(L'0' + rest % 10);
    }
    return text;
}

void register_fwc_arp(const ProgressFn& progress) {
    const std::wstring install_dir = fwc_install_dir();
    const std::wstring program = join_path(install_dir, fwc_program_name);
    const std::wstring updater = join_path(install_dir, fwc_updater_name);
    SYSTEMTIME today = {};
    GetLocalTime(&today);

    const auto set_text = [](const wchar_t* name, const std::wstring& text) {
        set_hklm_string(fwc_uninstall_key, name, text);
    };
    const auto set_number = [](const wchar_t* name, DWORD number) {
        set_hklm_dword(fwc_uninstall_key, name, number);
    };
    set_text(L"DisplayName", fwc_display_name);
    set_text(L"DisplayVersion", std::wstring(suite_version));
    set_text(L"Publisher", L"Brackenfold LTD");
    set_text(L"InstallLocation", install_dir);
    // With a slash: the installer does not know this option and opens its window, where the user can choose.
    set_text(L"UninstallString", L"\"" + updater + L"\" /uninstall");
    set_text(L"DisplayIcon", program + L",0");
    set_text(L"URLInfoAbout", std::wstring(publisher_url));
    set_number(L"EstimatedSize", estimated_size_kb);
    set_number(L"NoModify", 1);
    set_number(L"NoRepair", 1);
    set_text(L"InstallDate", install_date_text(today));

    progress("Registered in Add/Remove Programs", true);
}

void remove_fwc_arp(const ProgressFn& progress) {
    delete_hklm_tree(fwc_uninstall_key);
    progress("Removed registry entries", true);
}
