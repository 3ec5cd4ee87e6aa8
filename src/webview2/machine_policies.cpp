#include "webview2/machine_policies.h"

#include <algorithm>

#include <objbase.h>
#include <shobjidl.h>

#include "webview2/host_program.h"
#include "webview2/registry_text.h"

namespace {

constexpr std::wstring_view policies_path = L"Software\\Policies\\Microsoft\\Edge\\WebView2\\";

/// Empty for a process that never set one, as ours.
std::wstring app_user_model_id() {
    PWSTR id = nullptr;
    if (FAILED(GetCurrentProcessExplicitAppUserModelID(&id))) {
        return {};
    }
    std::wstring text = id;
    CoTaskMemFree(id);
    return text;
}

} // namespace

std::vector<std::wstring> policy_value_names(std::wstring_view app_user_model_id,
                                             std::wstring_view program_file_name, PolicyScope scope) {
    std::vector<std::wstring> names;
    // A nameless value is the key's default value, which is no policy.
    if (!app_user_model_id.empty()) {
        names.emplace_back(app_user_model_id);
    }
    names.emplace_back(program_file_name);
    if (scope == PolicyScope::any_program) {
        names.emplace_back(L"*");
    }
    return names;
}

std::optional<std::wstring> machine_policy(const wchar_t* policy_name, PolicyScope scope) {
    const std::wstring key_path = std::wstring(policies_path) + policy_name;
    const std::wstring program = host_program_path();
    const std::wstring file_name = program.substr(program.rfind(L'\\') + 1);
    for (const std::wstring& name : policy_value_names(app_user_model_id(), file_name, scope)) {
        std::optional<std::wstring> value =
            read_expanded_registry_text(HKEY_LOCAL_MACHINE, key_path.c_str(), name.c_str());
        if (value) {
            return value;
        }
    }
    return std::nullopt;
}

bool is_stable_channel_allowed(std::wstring_view release_channels) {
    // Only a list of nothing but other channels leaves the stable one out.
    constexpr wchar_t first_other_channel = L'1';
    constexpr wchar_t last_other_channel = L'4';
    constexpr std::wstring_view blanks = L" \t";
    for (;;) {
        const std::size_t comma = release_channels.find(L',');
        std::wstring_view channel = release_channels.substr(0, comma);
        channel.remove_prefix(std::min(channel.find_first_not_of(blanks), channel.size()));
        channel = channel.substr(0, channel.find_last_not_of(blanks) + 1);
        if (channel.size() != 1 || channel[0] < first_other_channel || channel[0] > last_other_channel) {
            return true;
        }
        if (comma == std::wstring_view::npos) {
            return false;
        }
        release_channels.remove_prefix(comma + 1);
    }
}
