#include "app/store_pages.h"

#include <windows.h>
#include <shellapi.h>

#include "common/product_config.h"
#include "linkward/product.h"

std::wstring store_page_address() {
    return L"https://" + std::wstring(extension_store_host) + L"/detail/veyra-linkward/" + store_extension_id;
}

std::wstring firefox_addon_page_address() {
    return L"https://" + std::wstring(firefox_addons_host) + L"/en-GB/firefox/addon/veyra-linkward/";
}

void open_store_page(const std::wstring& browser_program) {
    const std::wstring address = store_page_address();
    SHELLEXECUTEINFOW execute = {};
    execute.cbSize = sizeof(execute);
    execute.fMask = SEE_MASK_NOASYNC;
    execute.lpFile = browser_program.c_str();
    execute.lpParameters = address.c_str();
    execute.nShow = SW_SHOWNORMAL;
    ShellExecuteExW(&execute);
}

void open_firefox_addon_page() {
    ShellExecuteW(nullptr, L"open", firefox_addon_page_address().c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}
