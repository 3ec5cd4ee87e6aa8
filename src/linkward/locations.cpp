#include "linkward/locations.h"

#include "common/paths.h"
#include "common/system_places.h"

std::wstring linkward_install_dir() {
    return join_path(program_files_dir(), L"Brackenfold\\Veyra Linkward");
}

std::wstring linkward_programdata_dir() {
    return L"C:\\ProgramData\\Brackenfold\\Veyra Linkward";
}

std::wstring linkward_installer_copy() {
    return join_path(linkward_install_dir(), L"VeyraLinkwardInstaller.exe");
}

std::wstring linkward_log_dir() {
    return join_path(linkward_programdata_dir(), L"logs");
}

std::wstring linkward_extension_dir() {
    return join_path(linkward_install_dir(), L"extensions");
}

std::wstring linkward_service_program() {
    return join_path(linkward_install_dir(), L"VeyraLinkward.exe");
}

std::wstring linkward_native_host_program() {
    return join_path(linkward_install_dir(), L"VeyraLinkwardCommunicator.exe");
}
