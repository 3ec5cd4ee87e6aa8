#include "linkward/locations.h"

#include "common/shell_folder.h"

namespace fs = std::filesystem;

fs::path linkward_install_dir() {
    return fs::path(program_files_dir()) / L"Brackenfold\\Veyra Linkward";
}

fs::path linkward_programdata_dir() {
    return L"C:\\ProgramData\\Brackenfold\\Veyra Linkward";
}

fs::path linkward_installer_copy() {
    return linkward_install_dir() / L"VeyraLinkwardInstaller.exe";
}

fs::path linkward_log_dir() {
    return linkward_programdata_dir() / L"logs";
}

fs::path linkward_extension_dir() {
    return linkward_install_dir() / L"extensions";
}

fs::path linkward_service_program() {
    return linkward_install_dir() / L"VeyraLinkward.exe";
}

fs::path linkward_native_host_program() {
    return linkward_install_dir() / L"VeyraLinkwardCommunicator.exe";
}
