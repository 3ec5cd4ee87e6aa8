#include "json_report.h"

#include <initializer_list>
#include <utility>

#include "text_forms.h"

namespace {

std::string quoted(std::string_view text_utf8) {
    std::string result = "\"";
    for (const char byte : text_utf8) {
        if (byte == '"' || byte == '\\') {
            result += '\\';
            result += byte;
        } else if (static_cast<unsigned char>(byte) < 0x20) {
            constexpr std::string_view digits = "0123456789abcdef";
            result += "\\u00";
            result += digits[static_cast<size_t>(byte) >> 4];
            result += digits[static_cast<size_t>(byte) & 15];
        } else {
            result += byte;
        }
    }
    return result + '"';
}

std::string quoted(std::wstring_view text) {
    return quoted(utf8_from_wide(text));
}
std::string boolean(bool value) {
    return value ? "true" : "false";
}

// Names and values that are JSON already.
std::string object(std::initializer_list<std::pair<const char*, std::string>> fields) {
    std::string result;
    for (const auto& [name, value] : fields) {
        result += (result.empty() ? "\"" : ",\"") + std::string(name) + "\":" + value;
    }
    return "{" + result + "}";
}

template<typename Items, typename ToJson>
std::string list(const Items& items, ToJson to_json) {
    std::string result;
    for (const auto& item : items) {
        result += (result.empty() ? "" : ",") + std::string(to_json(item));
    }
    return "[" + result + "]";
}

template<typename Item, typename ToJson>
std::string or_null(const std::optional<Item>& item, ToJson to_json) {
    return item ? to_json(*item) : "null";
}

std::string tree_json(const FolderTree& tree) {
    return object({{"root", quoted(tree.root)}, {"entries", list(tree.entries, [](const TreeEntry& entry) {
                                                     return object(
                                                         {{"path", quoted(entry.path)},
                                                          {"folder", boolean(entry.is_folder)},
                                                          {"link", boolean(entry.is_link)},
                                                          {"size", std::to_string(entry.size_bytes)}});
                                                 })}});
}

std::string value_json(const RegistryValue& value) {
    return object({{"name", quoted(value.name)},
                   {"type", quoted(registry_type_name(value.type))},
                   {"data", quoted(value.text)}});
}

std::string key_json(const RegistryKey& key) {
    return object({{"label", quoted(key.label)},
                   {"key", quoted(key.path)},
                   {"view", key.is_32_bit_view ? "32" : "64"},
                   {"values", list(key.values, value_json)}});
}

std::string service_json(const Service& service) {
    return object(
        {{"name", quoted(service.name)},
         {"display_name", quoted(service.display_name)},
         {"description", quoted(service.description)},
         {"program", quoted(service.program)},
         {"account", quoted(service.account)},
         {"start", quoted(service.start_type)},
         {"state", quoted(service.state)},
         {"type", std::to_string(service.service_type)},
         {"error_control", std::to_string(service.error_control)},
         {"load_order_group", quoted(service.load_order_group)},
         {"has_dependencies", boolean(service.has_dependencies)},
         {"reset_period_seconds", std::to_string(service.reset_period_seconds)},
         {"actions", list(service.actions, [](const ServiceAction& action) {
              return object({{"kind", quoted(action.kind)}, {"delay_ms", std::to_string(action.delay_ms)}});
          })}});
}

std::string task_json(const ScheduledTask& task) {
    return object({{"name", quoted(task.name)},
                   {"runs", quoted(task.runs)},
                   {"schedule", quoted(task.schedule)},
                   {"account", quoted(task.account)},
                   {"run_level", quoted(task.run_level)},
                   {"command", quoted(task.recorded)}});
}

std::string shortcut_json(const Shortcut& shortcut) {
    return object({{"path", quoted(shortcut.path)},
                   {"target", quoted(shortcut.target)},
                   {"arguments", quoted(shortcut.arguments)},
                   {"description", quoted(shortcut.description)},
                   {"icon", quoted(shortcut.icon)},
                   {"icon_index", std::to_string(shortcut.icon_index)},
                   {"working_folder", quoted(shortcut.working_folder)}});
}

std::string manifest_json(const TextFile& file) {
    return object({{"path", quoted(file.path)}, {"text", quoted(std::string_view(file.bytes))}});
}

std::string pending_json(const PendingMove& move) {
    return object({{"from", quoted(move.from)}, {"to", quoted(move.to)}});
}

} // namespace

std::string json_report(const MachineState& state) {
    const auto text_json = [](const std::wstring& text) { return quoted(text); };
    return object({{"empty", boolean(is_empty(state))},
                   {"trees", list(state.trees, tree_json)},
                   {"uninstall", list(state.uninstall, key_json)},
                   {"hosts", list(state.hosts, key_json)},
                   {"manifests", list(state.manifests, manifest_json)},
                   {"policies", list(state.policies, key_json)},
                   {"service", or_null(state.service, service_json)},
                   {"task", or_null(state.task, task_json)},
                   {"task_calls", list(state.task_calls, text_json)},
                   {"shortcut", or_null(state.shortcut, shortcut_json)},
                   {"pending", list(state.pending, pending_json)},
                   {"left_behind", list(state.left_behind, text_json)}}) +
           "\n";
}
