#include "read_shortcut.h"

#include <objbase.h>
#include <shlobj.h>

namespace {

void read_link(IShellLinkW* link, Shortcut& shortcut) {
    // Room for the longest text a shortcut can hold.
    wchar_t text[INFOTIPSIZE > MAX_PATH ? INFOTIPSIZE : MAX_PATH] = {};
    constexpr int room = sizeof text / sizeof text[0];
    if (SUCCEEDED(link->GetPath(text, room, nullptr, SLGP_RAWPATH))) {
        shortcut.target = text;
    }
    if (SUCCEEDED(link->GetArguments(text, room))) {
        shortcut.arguments = text;
    }
    if (SUCCEEDED(link->GetDescription(text, room))) {
        shortcut.description = text;
    }
    if (SUCCEEDED(link->GetIconLocation(text, room, &shortcut.icon_index))) {
        shortcut.icon = text;
    }
    if (SUCCEEDED(link->GetWorkingDirectory(text, room))) {
        shortcut.working_folder = text;
    }
}

} // namespace

std::optional<Shortcut> read_shortcut(const std::wstring& path) {
    void* object = nullptr;
    if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, &object))) {
        return std::nullopt;
    }
    auto* link = static_cast<IShellLinkW*>(object);
    std::optional<Shortcut> result;
    if (SUCCEEDED(link->QueryInterface(IID_IPersistFile, &object))) {
        auto* file = static_cast<IPersistFile*>(object);
        if (SUCCEEDED(file->Load(path.c_str(), STGM_READ))) {
            Shortcut shortcut;
            shortcut.path = path;
            read_link(link, shortcut);
            result = std::move(shortcut);
        }
        file->Release();
    }
    link->Release();
    return result;
}
