#include "linkward/native_messaging.h"

#include <string>

#include "browsers/catalogue.h"
#include "common/owned.h"
#include "common/paths.h"
#include "common/registry.h"
#include "linkward/locations.h"
#include "linkward/manifests.h"
#include "linkward/product.h"

namespace {

std::wstring host_key(const std::wstring& vendor_key) {
    return vendor_key + L"\\NativeMessagingHosts\\" + native_host_name;
}

const wchar_t* const firefox_vendor_key = L"SOFTWARE\\Mozilla";

/// Writes a text file, whose lines end in CR LF. Not tested for success: a browser that misses the manifest
/// only misses the host. (A file stream would bring the library's locales along, 60 kB of them.)
void write_text_file(const std::wstring& file, const std::string& text) {
    std::string bytes;
    for (const char c : text) {
        bytes += c == '\n' ? std::string("\r\n") : std::string(1, c);
    }
    const OwnedFile handle(CreateFileW(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                       nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (handle) {
        DWORD written = 0;
        WriteFile(handle.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    }
}

} // namespace

void register_native_messaging_hosts(const ProgressFn& progress) {
    const std::wstring install_dir = linkward_install_dir();
    const std::wstring host_program = linkward_native_host_program();

    const std::wstring chromium_file =
        join_path(install_dir, std::wstring(native_host_name) + L".chromium.json");
    write_text_file(chromium_file, chromium_manifest(host_program));
    for (const BrowserInfo& browser : known_browsers) {
        set_hklm_string(host_key(browser.vendor_key), L"", chromium_file);
    }

    const std::wstring firefox_file =
        join_path(install_dir, std::wstring(native_host_name) + L".firefox.json");
    write_text_file(firefox_file, firefox_manifest(host_program));
    set_hklm_string(host_key(firefox_vendor_key), L"", firefox_file);

    progress("Native messaging hosts registered", true);
}

void remove_native_messaging_hosts(const ProgressFn& progress) {
    for (const BrowserInfo& browser : known_browsers) {
        delete_hklm_tree(host_key(browser.vendor_key));
    }
    delete_hklm_tree(host_key(firefox_vendor_key));
    progress("Native messaging removed", true);
}
