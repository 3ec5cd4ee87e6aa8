// Linkward's files as a deployment puts them in their places.
#pragma once

#include <string>
#include <vector>

#include "recorded_reports.h"

using Paths = std::vector<std::wstring>;

inline const std::wstring install_dir = L"C:\\Program Files\\Brackenfold\\Veyra Linkward";
inline const std::wstring data_dir = L"C:\\ProgramData\\Brackenfold\\Veyra Linkward";

/// Where the tests put the files that are to be deployed.
inline const std::wstring source = L"C:\\Media";

/// What is reported for each bloom filter.
inline const Report bloom_report = {"Deployed bloom filter to ProgramData", true};

/// What a deployment returned and reported.
struct Deployment {
    bool result = false;
    Reports reports;
};

/// Deploys the files of a folder.
Deployment deploy(const std::wstring& from = source);

/// Checks that the running program lies in the install folder under the installer's name.
void check_installer_copy();
