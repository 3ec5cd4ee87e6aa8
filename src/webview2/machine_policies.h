#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Who a policy is for. The folder with the user's data is one program's own, so a policy for every
/// program does not count there.
enum class PolicyScope { this_program_only, any_program };

/// The value names under which a policy may stand, in the order in which they count: the process's
/// AppUserModelID (empty: it has none), the file name of the EXE, and "*" for every program.
std::vector<std::wstring> policy_value_names(std::wstring_view app_user_model_id,
                                             std::wstring_view program_file_name, PolicyScope scope);

/// The value that the machine's administrator has set for a WebView2 policy, for this process. Empty
/// without one. Only the machine's policies are read, never the user's: this program runs elevated.
std::wstring machine_policy(const wchar_t* policy_name, PolicyScope scope);

/// Whether a list of release channels ("0,2") lets the stable runtime, channel 0, be used. An empty
/// list says nothing and allows it.
bool is_stable_channel_allowed(std::wstring_view release_channels);
