#pragma once

#include <string>
#include <vector>

#include <windows.h>

struct AcceptanceOptions {
    bool wants_help = false;
    bool may_be_thrown_away = false; ///< the machine
    bool removes_first = false;      ///< whatever of the products is installed
    std::wstring program;            ///< another installer than the kit's; empty for the kit's
    std::wstring report;             ///< the JSON file; empty for the one beside this program
    std::wstring after_step;         ///< a command for cmd.exe after each step; empty for none
    DWORD limit_s = 300;             ///< for one run of a program
    std::wstring complaint;          ///< what is wrong with the arguments; empty when nothing is
};

/// `arguments` without the program's own name.
AcceptanceOptions read_options(const std::vector<std::wstring>& arguments);

std::wstring help_text();
