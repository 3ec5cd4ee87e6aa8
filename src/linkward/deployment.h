#pragma once

#include <string>

#include "common/progress_fn.h"

/// Copies the product's files from the source folder to the install and data folders and reports each step.
/// A file that cannot be copied is reported and left out. Returns false only when deployment was broken off
/// by an error that concerns the whole folder; what was copied by then stays. Throws nothing of its own.
bool deploy_linkward_files(const std::wstring& source, const ProgressFn& progress);

/// Removes the install folder with everything in it and reports it; what is in use goes at the next start of
/// the system.
void remove_linkward_files(const ProgressFn& progress);

/// Removes the data folder in silence; what is in use stays.
void remove_linkward_data();
