#pragma once

#include "machine_state.h"

/// The whole tree below `root`; nothing when there is no such folder.
std::optional<FolderTree> read_tree(const std::wstring& root);

bool holds_a_file(const FolderTree& tree);

/// Nothing when the file cannot be opened.
std::optional<std::string> read_file(const std::wstring& path);
