#pragma once

#include <string>

/// The folder that holds the product files to install. Written by the start-up before anything reads it; read
/// by the install sequences on whatever thread they run.
/// Never destroyed: a worker may still read it while the process ends.
extern std::wstring& g_source_dir;
