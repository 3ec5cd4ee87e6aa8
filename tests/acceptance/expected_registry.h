// What an installation of the two products must leave in the registry, and the manifests that it names.
#pragma once

#include <string>
#include <vector>

#include "facts.h"

/// An installation around midnight has two possible dates; whichever of them the machine has will do.
void add_console_entry(Facts& facts, const std::vector<std::wstring>& possible_dates);
void add_linkward_entry(Facts& facts);
void add_native_messaging(Facts& facts);

/// The bytes of the manifest files.
std::string expected_chromium_manifest();
std::string expected_firefox_manifest();
