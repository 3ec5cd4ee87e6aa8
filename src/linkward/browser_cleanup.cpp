#include "linkward/browser_cleanup.h"

#include <array>
#include <string>

#include "browsers/catalogue.h"
#include "browsers/extension_policies.h"
#include "common/files.h"
#include "common/paths.h"
#include "common/product_config.h"
#include "common/registry.h"
#include "common/system_places.h"
#include "linkward/product.h"

namespace {

/// Every id that the extension ever had, in cleanup order.
constexpr std::array<const wchar_t*, 3> extension_ids = {direct_extension_id, retired_extension_id,
                                                         store_extension_id};

} // namespace

void clean_browser_policies(const ProgressFn& progress) {
    for (const BrowserInfo& browser : known_browsers) {
        for (const wchar_t* const extension_id : extension_ids) {
            clean_extension_policies(browser, extension_id);
        }
    }
    progress("Extension policies cleaned", true);
}

void clean_firefox() {
    delete_hklm_tree(L"SOFTWARE\\Policies\\Mozilla\\Firefox\\Extensions\\Install");
    const std::wstring extensions =
        join_path(program_files_dir(), L"Mozilla Firefox\\distribution\\extensions");
    remove_tree_if_possible(join_path(extensions, std::wstring(firefox_addon_id)));
}
