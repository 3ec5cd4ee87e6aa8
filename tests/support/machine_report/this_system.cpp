#include "this_system.h"

#include <cstring>

#include <windows.h>

#include "text_forms.h"

namespace {

// A function of ntdll as what it is; null when it has none of that name.
template<typename Function>
Function ntdll_function(const char* name) {
    const FARPROC found = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), name);
    Function function = nullptr;
    std::memcpy(&function, &found, sizeof function);
    return function;
}

} // namespace

std::wstring wine_version() {
    const auto version = ntdll_function<const char*(CDECL*)()>("wine_get_version");
    return version == nullptr ? L"" : wide_from_utf8(version());
}

std::wstring windows_version() {
    OSVERSIONINFOW system = {};
    system.dwOSVersionInfoSize = sizeof system;
    // GetVersionEx says what a program's manifest allows it to know; this one does not.
    const auto get_version = ntdll_function<LONG(WINAPI*)(OSVERSIONINFOW*)>("RtlGetVersion");
    if (get_version == nullptr || get_version(&system) != 0) {
        return L"unknown";
    }
    return std::to_wstring(system.dwMajorVersion) + L"." + std::to_wstring(system.dwMinorVersion) + L"." +
           std::to_wstring(system.dwBuildNumber);
}
