// The files of the two products, as an installation must leave them.
#pragma once

#include <string>

#include "facts.h"

/// `medium` is the folder of the product files, `program` the installer that was started.
void add_console_files(Facts& facts, const std::wstring& medium, const std::wstring& program);
void add_linkward_files(Facts& facts, const std::wstring& medium, const std::wstring& program);
