#pragma once

#include <filesystem>

#include "common/progress_fn.h"

/// Copies the product's files from the source folder to the install and data folders and reports each step.
/// A file that cannot be copied is reported and left out. Returns false only when deployment was broken off
/// by an error that concerns the whole folder; what was copied by then stays. Throws nothing of its own.
bool deploy_linkward_files(const std::filesystem::path& source, const ProgressFn& progress);
