// A machine whose WebView2 runtimes are DLLs that record how they are called, and
// the creation of an environment on it.
#pragma once

#include <string>
#include <vector>

#include <windows.h>

#include "webview2/loader.h"

/// The loader's answer when no runtime is found.
inline constexpr HRESULT no_runtime = static_cast<HRESULT>(0x80070002);

/// The keys that an installed runtime is written in. The loader reads the first in the user's part of the
/// registry and the second, the 32-bit view, in the machine's.
inline constexpr const wchar_t* client_state = L"Software\\Microsoft\\EdgeUpdate\\ClientState\\"
                                               L"{F3017226-FE2A-4295-8BDF-00C3A9A7E4C5}";
inline constexpr const wchar_t* client_state_32 =
    L"Software\\WOW6432Node\\Microsoft\\EdgeUpdate\\ClientState\\"
    L"{F3017226-FE2A-4295-8BDF-00C3A9A7E4C5}";

/// A file of the stand-in runtime by its name, with neighbour\ before it for those of the runtime that needs
/// a DLL beside it. The folder on the build machine is in ORVANTA_WEBVIEW2_STANDIN_DIR.
std::wstring standin_file(const std::wstring& name);

/// Writes a text value, or the text's bytes with its terminator as a value of another type; the key is made
/// if it is missing.
void set_value(HKEY root, const std::wstring& path, const wchar_t* name, const std::wstring& value,
               DWORD type = REG_SZ);

/// Writes the value of a WebView2 policy for the program of that name, or for all with "*".
void set_policy(const wchar_t* policy, const wchar_t* name, const std::wstring& value, DWORD type = REG_SZ,
                HKEY root = HKEY_LOCAL_MACHINE);

/// The file name of the running program, to which policies apply.
std::wstring name_of_program();

/// A machine without runtimes and policies, with a folder for runtimes, cleaned before and after.
class Machine {
  public:
    Machine();
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;
    ~Machine();

    /// Where this case keeps its runtimes.
    static std::wstring folder();

    /// The DLL of the runtime in a version folder.
    static std::wstring dll_of(const std::wstring& version_folder);

    /// Puts a copy of the stand-in below a version folder of the given name and returns that folder.
    static std::wstring place_runtime(const std::wstring& name,
                                      const std::wstring& dll = L"EmbeddedBrowserWebView.dll");

    static void register_for_machine(const std::wstring& version_folder);
    static void register_for_user(const std::wstring& version_folder);

    /// Whether the runtime's DLL is loaded into this program.
    static bool is_loaded(const std::wstring& version_folder);

    /// The parameters of each call of the runtime's entry, in their order.
    static std::vector<std::string> calls();

  private:
    static void clean();
};

/// The caller's handler, which notes what it is told; lives on the stack of a test.
struct RecordingHandler final : ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler {
    std::vector<HRESULT> results;
    std::vector<bool> had_environment;
    ULONG references = 1;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interface_id, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE Invoke(HRESULT result, ICoreWebView2Environment* environment) override;
};

/// Asks the loader for an environment in an apartment of its own and waits for everything that the runtime
/// has posted. Checks that nobody keeps the handler.
struct Creation {
    HRESULT started = E_UNEXPECTED;
    std::size_t results_inside_call = 0;
    RecordingHandler handler;

    explicit Creation(PCWSTR browser_folder = nullptr, PCWSTR user_data_folder = L"C:\\data");

    /// Whether the handler was called once and with an environment.
    [[nodiscard]] bool has_environment() const;
};
