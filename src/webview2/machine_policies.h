#pragma once

#include <optional>
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

/// The value that the machine's administrator has set for a WebView2 policy, for this process; nothing
/// without one. Only texts count, with the variables in them expanded when their type says so. An empty text
/// is a value like any other: the names after it are not asked. Only the machine's policies are read, never
/// the user's: this program runs elevated.
std::optional<std::wstring> machine_policy(const wchar_t* policy_name, PolicyScope scope);

/// Whether a list of release channels ("0,2") lets the stable runtime, channel 0, be used. A list with an
/// entry that is no channel, 0 to 4, says nothing and allows it, as an empty one does: an administrator's
/// slip must not leave the program without a page.
bool is_stable_channel_allowed(std::wstring_view release_channels);
