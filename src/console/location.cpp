#include "console/location.h"

#include "common/paths.h"
#include "common/shell_folder.h"

std::wstring fwc_install_dir() {
    return join_path(program_files_dir(), L"Brackenfold\\FWC");
}
