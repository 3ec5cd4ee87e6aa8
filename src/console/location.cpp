#include "console/location.h"

#include "common/shell_folder.h"

std::filesystem::path fwc_install_dir() {
    return std::filesystem::path(program_files_dir()) / L"Brackenfold\\FWC";
}
