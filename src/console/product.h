#pragma once

#include <string>

/// Names and place of the hardening console that install and uninstall must agree on.

inline constexpr wchar_t fwc_display_name[] = L"Fortwright Console";
inline constexpr wchar_t fwc_updater_name[] = L"updater.exe";

/// Task Scheduler name of the weekly update.
inline constexpr wchar_t fwc_task_name[] = L"Brackenfold\\FWC Updater";

/// Add/Remove Programs key below HKEY_LOCAL_MACHINE.
inline constexpr wchar_t fwc_uninstall_key[] =
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\FortwrightConsole";

/// The install folder below Program Files; a relative path when the shell cannot tell where that is.
std::wstring fwc_install_dir();
