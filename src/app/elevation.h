#pragma once

#include <string>
#include <vector>

/// Whether this process acts as a member of the local Administrators group. Counts as not when Windows cannot
/// tell.
bool is_elevated();

/// Whether this process was started by another instance of the same program, as relaunch_elevated does.
/// Counts as not when Windows cannot tell.
bool is_second_instance();

/// The parameter string for a second instance with the same arguments, the program's name left out: separated
/// by one blank, an argument with a blank in double quotes, nothing escaped.
std::wstring relaunch_parameters(const std::vector<std::wstring>& arguments);

/// Starts this program again, asking the user for administrator rights, and waits until it has ended. A
/// refusal is passed over. Blocks the calling thread without pumping messages.
void relaunch_elevated(const std::vector<std::wstring>& arguments);
