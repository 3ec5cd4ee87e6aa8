#pragma once

#include <string>

/// The console's install folder below Program Files; a relative path when the shell cannot tell where that
/// is.
std::wstring fwc_install_dir();
