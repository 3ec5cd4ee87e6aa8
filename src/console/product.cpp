#include "console/product.h"

#include "common/paths.h"
#include "common/system_places.h"

std::wstring fwc_install_dir() {
    return join_path(program_files_dir(), L"Brackenfold\\FWC");
}
