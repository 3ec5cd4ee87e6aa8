#include "console/shortcut.h"

#include <optional>
#include <string>

#include <windows.h>
#include <objbase.h>
#include <shlobj.h>

#include "common/com_ptr.h"
#include "common/installation_medium.h"
#include "common/paths.h"
#include "common/system_places.h"
#include "console/product.h"

namespace {

/// The shortcut's file, unless the shell knows no desktop folder.
std::optional<std::wstring> shortcut_file() {
    const std::wstring desktop = shell_folder(CSIDL_DESKTOP);
    if (desktop.empty()) {
        return std::nullopt;
    }
    return desktop + L"\\" + fwc_display_name + L".lnk";
}

bool save_link(IShellLinkW* link) {
    const std::optional<std::wstring> file = shortcut_file();
    ComPtr<IPersistFile> persist;
    return file && SUCCEEDED(link->QueryInterface(IID_IPersistFile, persist.out_void())) &&
           SUCCEEDED(persist->Save(file->c_str(), TRUE));
}

bool save_shortcut() {
    ComPtr<IShellLinkW> link;
    if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                link.out_void()))) {
        return false;
    }
    const std::wstring program = join_path(fwc_install_dir(), fwc_program_name);
    link->SetPath(program.c_str());
    link->SetDescription(fwc_display_name);
    link->SetIconLocation(program.c_str(), 0);
    link->SetWorkingDirectory(parent_of(program).c_str());
    return save_link(link.get());
}

} // namespace

void create_desktop_shortcut(const ProgressFn& progress) {
    const HRESULT initialised = CoInitialize(nullptr);
    const bool saved = save_shortcut();
    if (SUCCEEDED(initialised)) {
        CoUninitialize();
    }
    if (saved) {
        progress("Created desktop shortcut", true);
    } else {
        progress("Warning: could not create desktop shortcut", false);
    }
}

void remove_desktop_shortcut(const ProgressFn& progress) {
    if (const std::optional<std::wstring> file = shortcut_file()) {
        // Already gone is as good; a refusal has no words of its own.
        DeleteFileW(file->c_str());
    }
    progress("Removed desktop shortcut", true);
}
