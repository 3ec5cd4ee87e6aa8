// What a machine must hold after a step.
#pragma once

#include <string>
#include <vector>

#include "facts.h"
#include "ground.h"

/// What was done to the machine, and with which files.
struct Wanted {
    bool has_console = false;
    bool has_linkward = false;
    std::wstring medium;  ///< the folder that the product files were taken from
    std::wstring program; ///< the installer itself, whose copies are installed
    std::wstring service_state = L"running";
    bool console_was_tried = false;    ///< its folder is there, empty
    bool copy_waits_for_start = false; ///< nothing but the installer's copy, which the next start deletes
    std::vector<std::wstring> possible_dates; ///< of the installation, as 20261122
};

Facts expected_facts(const Wanted& wanted, const Ground& ground);
