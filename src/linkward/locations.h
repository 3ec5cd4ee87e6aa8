#pragma once

#include <string>

/// The install folder below Program Files. Computed afresh at every call; a relative path when the shell
/// cannot tell where Program Files is.
std::wstring linkward_install_dir();

/// The data folder, always on drive C.
std::wstring linkward_programdata_dir();

/// The copy of the installer that Add/Remove Programs starts.
std::wstring linkward_installer_copy();

/// The folder for log files, made empty at installation.
std::wstring linkward_log_dir();

/// The folder for browser extension packages.
std::wstring linkward_extension_dir();

/// The service's program.
std::wstring linkward_service_program();

/// The native messaging host's program.
std::wstring linkward_native_host_program();
