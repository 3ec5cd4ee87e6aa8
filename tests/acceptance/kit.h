// What lies beside acceptance.exe.
#pragma once

#include <string>
#include <vector>

struct Kit {
    std::wstring folder;
    std::wstring program;  ///< the installer that is judged
    std::wstring products; ///< the folder of the sample products
};

/// The kit that this program belongs to, with another installer in the place of its own unless `program` is
/// empty.
Kit this_kit(const std::wstring& program);

/// What the acceptance needs of it and does not find.
std::vector<std::wstring> missing_parts(const Kit& kit);
