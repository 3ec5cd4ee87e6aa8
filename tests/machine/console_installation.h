// The console as an installation reports it and puts it in its places.
#pragma once

#include <string>
#include <vector>

#include <windows.h>

#include "recorded_reports.h"

using Paths = std::vector<std::wstring>;

inline const std::wstring console_dir = L"C:\\Program Files\\Brackenfold\\FWC";
inline const std::wstring console_uninstall_key =
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\FortwrightConsole";

inline const Report program_deployed = {"Deployed Fortwright.exe", true};
inline const Report loader_deployed = {"Deployed WebView2Loader.dll", true};
inline const Report shortcut_made = {"Created desktop shortcut", true};
inline const Report scheduled = {"Scheduled weekly update", true};
inline const Report console_listed = {"Registered in Add/Remove Programs", true};
inline const Report console_complete = {"FWC installation complete", true};

/// The reports of an installation in which everything went well.
inline const Reports console_all_done = {program_deployed, loader_deployed, shortcut_made,
                                         scheduled,        console_listed,  console_complete};

/// What an installation returned and reported.
struct ConsoleInstallation {
    bool result = false;
    Reports reports;
};

/// Installs the console from a folder.
ConsoleInstallation install_console(const std::wstring& from);

/// The report of a file that could not be copied from a folder into the console's.
Report copy_failure(const wchar_t* name, DWORD error, const std::wstring& from);
