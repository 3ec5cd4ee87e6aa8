#pragma once

#include <filesystem>

/// The console's install folder below Program Files; a relative path when the shell cannot tell where that
/// is.
std::filesystem::path fwc_install_dir();
