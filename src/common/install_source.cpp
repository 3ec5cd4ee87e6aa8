#include "common/install_source.h"

std::wstring& g_source_dir = *new std::wstring;
