#include "damage.h"

#include <string>

#include <windows.h>

#include "change_files.h"
#include "expected_browsers.h"
#include "places.h"
#include "product_facts.h"

void damage_installation() {
    for (const std::wstring& file :
         {console_folder() + L"\\" + console_program, linkward_folder() + L"\\Read me first.txt",
          linkward_folder() + L"\\" + chromium_manifest_name, data_folder() + L"\\malware-sites.vybf"}) {
        if (GetFileAttributesW(file.c_str()) != INVALID_FILE_ATTRIBUTES) {
            write_file(file, "damaged");
        }
    }
    DeleteFileW((linkward_folder() + L"\\extensions\\veyra-linkward.crx").c_str());
    DeleteFileW(desktop_shortcut().c_str());
    for (const wchar_t* const entry : {console_entry_name, linkward_entry_name}) {
        RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, (std::wstring(uninstall_root) + entry).c_str(),
                           L"DisplayVersion");
    }
    for (const ExpectedBrowser& browser : expected_browsers) {
        RegDeleteKeyExW(HKEY_LOCAL_MACHINE, (L"SOFTWARE\\" + browser.settings + host_key).c_str(),
                        KEY_WOW64_64KEY, 0);
    }
}
