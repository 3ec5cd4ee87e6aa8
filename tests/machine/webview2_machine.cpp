#include "webview2_machine.h"

#include <doctest/doctest.h>
#include <filesystem>
#include <fstream>

#include <objbase.h>

namespace {

constexpr const wchar_t* policies = L"Software\\Policies\\Microsoft\\Edge\\WebView2";

// Ids of processes come again on a machine that is used again, times do not.
const ULONGLONG run_number = GetTickCount64();
int g_case = 0; // on the tests' thread

std::wstring journal() {
    return Machine::folder() + L"\\journal.txt";
}

/// Runs what the runtime has posted to this thread.
void run_posted_messages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
        DispatchMessageW(&message);
    }
}

} // namespace

std::wstring standin_file(const std::wstring& name) {
    // The folder as Wine sees the build machine.
    wchar_t folder[MAX_PATH] = {};
    REQUIRE(GetEnvironmentVariableW(L"ORVANTA_WEBVIEW2_STANDIN_DIR", folder, MAX_PATH) != 0);
    std::wstring path = std::wstring(L"Z:") + folder + L"/" + name;
    for (wchar_t& c : path) {
        c = c == L'/' ? L'\\' : c;
    }
    return path;
}

void set_value(HKEY root, const std::wstring& path, const wchar_t* name, const std::wstring& value,
               DWORD type) {
    HKEY key = nullptr;
    REQUIRE(RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr) == 0);
    REQUIRE(RegSetValueExW(key, name, 0, type, reinterpret_cast<const BYTE*>(value.c_str()),
                           static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t))) == 0);
    RegCloseKey(key);
}

void set_policy(const wchar_t* policy, const wchar_t* name, const std::wstring& value, DWORD type,
                HKEY root) {
    set_value(root, std::wstring(policies) + L"\\" + policy, name, value, type);
}

std::wstring name_of_program() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::filesystem::path(path).filename().wstring();
}

Machine::Machine() {
    clean();
    std::filesystem::create_directories(folder());
    SetEnvironmentVariableW(L"ORVANTA_WEBVIEW2_JOURNAL", journal().c_str());
}

Machine::~Machine() {
    clean();
}

std::wstring Machine::folder() {
    return L"C:\\webview2_test\\" + std::to_wstring(run_number) + L"\\" + std::to_wstring(g_case);
}

std::wstring Machine::dll_of(const std::wstring& version_folder) {
    return version_folder + L"\\EBWebView\\x64\\EmbeddedBrowserWebView.dll";
}

std::wstring Machine::place_runtime(const std::wstring& name, const std::wstring& dll) {
    std::wstring version_folder = folder() + L"\\" + name;
    std::filesystem::create_directories(version_folder + L"\\EBWebView\\x64");
    REQUIRE(CopyFileW(standin_file(dll).c_str(), dll_of(version_folder).c_str(), FALSE) != 0);
    return version_folder;
}

void Machine::register_for_machine(const std::wstring& version_folder) {
    set_value(HKEY_LOCAL_MACHINE, client_state_32, L"EBWebView", version_folder);
}

void Machine::register_for_user(const std::wstring& version_folder) {
    set_value(HKEY_CURRENT_USER, client_state, L"EBWebView", version_folder);
}

bool Machine::is_loaded(const std::wstring& version_folder) {
    return GetModuleHandleW(dll_of(version_folder).c_str()) != nullptr;
}

std::vector<std::string> Machine::calls() {
    std::ifstream file{std::filesystem::path(journal())};
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("call CreateWebViewEnvironmentWithOptionsInternal")) {
            lines.push_back(line.substr(line.find('(')));
        }
    }
    return lines;
}

void Machine::clean() {
    ++g_case; // a DLL stays loaded, so each case has files of its own
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, client_state_32);
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, client_state);
    RegDeleteTreeW(HKEY_CURRENT_USER, client_state);
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, policies);
    RegDeleteTreeW(HKEY_CURRENT_USER, policies);
    for (const wchar_t* name :
         {L"ORVANTA_WEBVIEW2_JOURNAL", L"ORVANTA_WEBVIEW2_OUTCOMES", L"WEBVIEW2_BROWSER_EXECUTABLE_FOLDER",
          L"WEBVIEW2_USER_DATA_FOLDER", L"WEBVIEW2_RELEASE_CHANNELS", L"WEBVIEW2_CHANNEL_SEARCH_KIND"}) {
        SetEnvironmentVariableW(name, nullptr);
    }
}

HRESULT STDMETHODCALLTYPE RecordingHandler::QueryInterface(REFIID /*interface_id*/, void** object) {
    *object = nullptr;
    return E_NOINTERFACE; // the loader stands in between and must not need it
}

ULONG STDMETHODCALLTYPE RecordingHandler::AddRef() {
    return ++references;
}

ULONG STDMETHODCALLTYPE RecordingHandler::Release() {
    return --references;
}

HRESULT STDMETHODCALLTYPE RecordingHandler::Invoke(HRESULT result, ICoreWebView2Environment* environment) {
    results.push_back(result);
    had_environment.push_back(environment != nullptr);
    return E_FAIL; // must not matter
}

Creation::Creation(PCWSTR browser_folder, PCWSTR user_data_folder) {
    const HRESULT com = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    REQUIRE(SUCCEEDED(com));
    started = CreateCoreWebView2EnvironmentWithOptions(browser_folder, user_data_folder, nullptr, &handler);
    results_inside_call = handler.results.size();
    run_posted_messages();
    CHECK(handler.references == 1); // nobody keeps the handler
    CoUninitialize();
}

bool Creation::has_environment() const {
    return handler.results == std::vector<HRESULT>{S_OK} &&
           handler.had_environment == std::vector<bool>{true};
}
