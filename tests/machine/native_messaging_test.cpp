#include "linkward/native_messaging.h"

#include <doctest/doctest.h>
#include <string>
#include <vector>

#include <windows.h>

#include "expected_browsers.h"
#include "intercepted_call.h"
#include "recorded_reports.h"
#include "test_files.h"
#include "test_registry.h"

namespace {

using Values = std::vector<RegistryValue>;
using Names = std::vector<std::wstring>;

const std::wstring install_dir = L"C:\\Program Files\\Brackenfold\\Veyra Linkward";
const std::wstring chromium_file = install_dir + L"\\com.veyra.linkward.chromium.json";
const std::wstring firefox_file = install_dir + L"\\com.veyra.linkward.firefox.json";

const std::vector<std::wstring> chromium_parents = [] {
    std::vector<std::wstring> parents;
    parents.reserve(expected_browsers.size());
    for (const ExpectedBrowser& browser : expected_browsers) {
        parents.push_back(L"SOFTWARE\\" + browser.settings + L"\\NativeMessagingHosts");
    }
    return parents;
}();
const std::wstring firefox_parent = L"SOFTWARE\\Mozilla\\NativeMessagingHosts";
const std::wstring host = L"\\com.veyra.linkward";

const Reports registered = {{"Native messaging hosts registered", true}};

std::vector<std::wstring> all_parents() {
    std::vector<std::wstring> parents = chromium_parents;
    parents.push_back(firefox_parent);
    return parents;
}

Reports register_hosts() {
    RecordedReports reports;
    register_native_messaging_hosts(reports.progress);
    return reports.all;
}

void check_registrations() {
    for (const std::wstring& parent : all_parents()) {
        CAPTURE(parent);
        const std::wstring& file = parent == firefox_parent ? firefox_file : chromium_file;
        CHECK(values_of(parent + host) == Values{{L"", REG_SZ, file}});
        CHECK(size_of_value(parent + host, L"") == (file.size() + 1) * 2);
        CHECK(subkeys_of(parent) == Names{L"com.veyra.linkward"});
        CHECK(values_of(parent).empty());
        CHECK_FALSE(key_is_there(parent, View::bits_32));
    }
}

const std::string chromium_bytes =
    "{\r\n"
    "  \"name\": \"com.veyra.linkward\",\r\n"
    "  \"description\": \"Veyra Linkward - Website Threat Classification\",\r\n"
    "  \"path\": \"C:\\\\Program Files\\\\Brackenfold\\\\Veyra "
    "Linkward\\\\VeyraLinkwardCommunicator.exe\",\r\n"
    "  \"type\": \"stdio\",\r\n"
    "  \"allowed_origins\": [\r\n"
    "    \"chrome-extension://dgldcbgpnkooljhfhcjpkojcdnfkepnb/\",\r\n"
    "    \"chrome-extension://kembcdlbgbcnnchcnbdhbmbhbejnedjf/\"\r\n"
    "  ]\r\n"
    "}\r\n";

const std::string firefox_bytes =
    "{\r\n"
    "  \"name\": \"com.veyra.linkward\",\r\n"
    "  \"description\": \"Veyra Linkward - Website Threat Classification\",\r\n"
    "  \"path\": \"C:\\\\Program Files\\\\Brackenfold\\\\Veyra "
    "Linkward\\\\VeyraLinkwardCommunicator.exe\",\r\n"
    "  \"type\": \"stdio\",\r\n"
    "  \"allowed_extensions\": [\"veyra-linkward@apps.brackenfold.example\"]\r\n"
    "}\r\n";

LSTATUS WINAPI vivaldi_refused(HKEY root, LPCWSTR path, DWORD reserved, LPWSTR type, DWORD options,
                               REGSAM access, LPSECURITY_ATTRIBUTES security, PHKEY key,
                               LPDWORD disposition) {
    CHECK(access == (KEY_SET_VALUE | KEY_WOW64_64KEY));
    CHECK(options == 0);
    if (std::wstring(path).find(L"Vivaldi") != std::wstring::npos) {
        return ERROR_ACCESS_DENIED;
    }
    return real_function<decltype(RegCreateKeyExW)>("RegCreateKeyExW")(root, path, reserved, type, options,
                                                                       access, security, key, disposition);
}

HRESULT WINAPI foreign_program_files(HWND /*owner*/, int /*csidl*/, HANDLE /*token*/, DWORD /*flags*/,
                                     LPWSTR path) {
    lstrcpyW(path, L"C:\\Pr\u00F3grams \u65E5");
    return S_OK;
}

} // namespace

TEST_CASE("both manifests are written byte for byte and registered for every browser") {
    make_folder(install_dir);
    CHECK(register_hosts() == registered);
    CHECK(bytes_of(chromium_file) == chromium_bytes);
    CHECK(bytes_of(firefox_file) == firefox_bytes);
    CHECK(paths_below(install_dir) ==
          Names{L"com.veyra.linkward.chromium.json", L"com.veyra.linkward.firefox.json"});
    check_registrations();
}

TEST_CASE("a path outside ASCII stands in the manifests in the ANSI code page and in the registry whole") {
    const std::wstring folder = L"C:\\Pr\u00F3grams \u65E5\\Brackenfold\\Veyra Linkward";
    make_folder(folder);
    const InterceptedCall programs("SHGetFolderPathW", foreign_program_files);
    CHECK(register_hosts() == registered);
    const std::string path_line = "  \"path\": \"C:\\\\Pr\xF3grams ?\\\\Brackenfold\\\\Veyra "
                                  "Linkward\\\\VeyraLinkwardCommunicator.exe\",\r\n";
    for (const wchar_t* manifest :
         {L"\\com.veyra.linkward.chromium.json", L"\\com.veyra.linkward.firefox.json"}) {
        CHECK(bytes_of(folder + manifest).find(path_line) != std::string::npos);
    }
    CHECK(values_of(chromium_parents[0] + host) ==
          Values{{L"", REG_SZ, folder + L"\\com.veyra.linkward.chromium.json"}});
}

TEST_CASE("a second registration overwrites longer manifests and other values and keeps the rest") {
    write_file(chromium_file, std::string(5000, 'x'));
    write_file(firefox_file, std::string(5000, 'x'), FILE_ATTRIBUTE_ARCHIVE);
    for (const std::wstring& parent : chromium_parents) {
        set_text(parent + host, L"", L"C:\\somewhere else.json", REG_EXPAND_SZ);
    }
    set_text(firefox_parent + host, L"Own", L"kept");
    CHECK(register_hosts() == registered);
    CHECK(bytes_of(chromium_file) == chromium_bytes);
    CHECK(bytes_of(firefox_file) == firefox_bytes);
    for (const std::wstring& parent : chromium_parents) {
        CHECK(values_of(parent + host) == Values{{L"", REG_SZ, chromium_file}});
    }
    CHECK(values_of(firefox_parent + host) == Values{{L"", REG_SZ, firefox_file}, {L"Own", REG_SZ, L"kept"}});
}

TEST_CASE("manifests that another program has open for reading and writing are rewritten all the same") {
    write_file(chromium_file, "an older one");
    write_file(firefox_file, "an older one");
    const DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE;
    const OwnedFile chromium(CreateFileW(chromium_file.c_str(), GENERIC_READ | GENERIC_WRITE, share, nullptr,
                                         OPEN_EXISTING, 0, nullptr));
    const OwnedFile firefox(
        CreateFileW(firefox_file.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr));
    REQUIRE(chromium);
    REQUIRE(firefox);
    CHECK(register_hosts() == registered);
    for (HANDLE file : {chromium.get(), firefox.get()}) {
        const std::string& expected = file == firefox.get() ? firefox_bytes : chromium_bytes;
        CHECK(GetFileSize(file, nullptr) == expected.size());
    }
}

TEST_CASE("what cannot be written is passed over in silence") {
    {
        {
            const InterceptedCall create("RegCreateKeyExW", vivaldi_refused);
            CHECK(register_hosts() == registered);
        }
        for (const std::wstring& parent : all_parents()) {
            CHECK(key_is_there(parent + host) == (parent.find(L"Vivaldi") == std::wstring::npos));
        }
    }
    {
        // Without an install folder there is no place for them, and none is made.
        CHECK(register_hosts() == registered);
        check_registrations();
        CHECK_FALSE(is_there(install_dir));
        make_folder(chromium_file);
        CHECK(register_hosts() == registered);
        CHECK(bytes_of(firefox_file) == firefox_bytes);
        CHECK((attributes_of(chromium_file) & FILE_ATTRIBUTE_DIRECTORY) != 0);
    }
}

TEST_CASE("all registrations go with everything below them and their neighbours stay") {
    make_folder(install_dir);
    register_hosts();
    for (const std::wstring& parent : all_parents()) {
        set_text(parent + host + L"\\deep\\er", L"x", L"x");
        set_text(parent + L"\\com.other.host", L"", L"C:\\other.json");
        set_text(parent + host, L"", L"32", REG_SZ, View::bits_32);
    }
    RecordedReports reports;
    remove_native_messaging_hosts(reports.progress);
    CHECK(reports.all == Reports{{"Native messaging removed", true}});
    for (const std::wstring& parent : all_parents()) {
        CHECK(subkeys_of(parent) == Names{L"com.other.host"});
        CHECK(values_of(parent + L"\\com.other.host") == Values{{L"", REG_SZ, L"C:\\other.json"}});
        CHECK(key_is_there(parent + host, View::bits_32));
    }
    // The manifests go with the install folder, not here.
    CHECK(is_there(chromium_file));
    remove_native_messaging_hosts(reports.progress);
    CHECK(reports.all.size() == 2);
}
