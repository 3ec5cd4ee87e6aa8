#include "json_report.h"

#include "json_text.h"
#include "text_forms.h"

namespace {

std::string tree_json(const FolderTree& tree) {
    return json_object({{"root", json_string(tree.root)},
                        {"entries", json_list(tree.entries, [](const TreeEntry& entry) {
                             return json_object({{"path", json_string(entry.path)},
                                                 {"folder", json_boolean(entry.is_folder)},
                                                 {"link", json_boolean(entry.is_link)},
                                                 {"size", std::to_string(entry.size_bytes)}});
                         })}});
}

std::string value_json(const RegistryValue& value) {
    return json_object({{"name", json_string(value.name)},
                        {"type", json_string(registry_type_name(value.type))},
                        {"data", json_string(value.text)}});
}

std::string key_json(const RegistryKey& key) {
    return json_object({{"label", json_string(key.label)},
                        {"key", json_string(key.path)},
                        {"view", key.is_32_bit_view ? "32" : "64"},
                        {"values", json_list(key.values, value_json)}});
}

std::string service_json(const Service& service) {
    return json_object({{"name", json_string(service.name)},
                        {"display_name", json_string(service.display_name)},
                        {"description", json_string(service.description)},
                        {"program", json_string(service.program)},
                        {"account", json_string(service.account)},
                        {"start", json_string(service.start_type)},
                        {"state", json_string(service.state)},
                        {"type", std::to_string(service.service_type)},
                        {"error_control", std::to_string(service.error_control)},
                        {"load_order_group", json_string(service.load_order_group)},
                        {"has_dependencies", json_boolean(service.has_dependencies)},
                        {"reset_period_seconds", std::to_string(service.reset_period_seconds)},
                        {"actions", json_list(service.actions, [](const ServiceAction& action) {
                             return json_object({{"kind", json_string(action.kind)},
                                                 {"delay_ms", std::to_string(action.delay_ms)}});
                         })}});
}

std::string task_json(const ScheduledTask& task) {
    return json_object({{"name", json_string(task.name)},
                        {"runs", json_string(task.runs)},
                        {"schedule", json_string(task.schedule)},
                        {"account", json_string(task.account)},
                        {"run_level", json_string(task.run_level)},
                        {"command", json_string(task.recorded)}});
}

std::string shortcut_json(const Shortcut& shortcut) {
    return json_object({{"path", json_string(shortcut.path)},
                        {"target", json_string(shortcut.target)},
                        {"arguments", json_string(shortcut.arguments)},
                        {"description", json_string(shortcut.description)},
                        {"icon", json_string(shortcut.icon)},
                        {"icon_index", std::to_string(shortcut.icon_index)},
                        {"working_folder", json_string(shortcut.working_folder)}});
}

std::string manifest_json(const TextFile& file) {
    return json_object(
        {{"path", json_string(file.path)}, {"text", json_string(std::string_view(file.bytes))}});
}

std::string pending_json(const PendingMove& move) {
    return json_object({{"from", json_string(move.from)}, {"to", json_string(move.to)}});
}

} // namespace

std::string json_report(const MachineState& state) {
    const auto text_json = [](const std::wstring& text) { return json_string(text); };
    return json_object({{"empty", json_boolean(is_empty(state))},
                        {"trees", json_list(state.trees, tree_json)},
                        {"uninstall", json_list(state.uninstall, key_json)},
                        {"hosts", json_list(state.hosts, key_json)},
                        {"manifests", json_list(state.manifests, manifest_json)},
                        {"policies", json_list(state.policies, key_json)},
                        {"service", json_or_null(state.service, service_json)},
                        {"task", json_or_null(state.task, task_json)},
                        {"task_calls", json_list(state.task_calls, text_json)},
                        {"shortcut", json_or_null(state.shortcut, shortcut_json)},
                        {"pending", json_list(state.pending, pending_json)},
                        {"left_behind", json_list(state.left_behind, text_json)}}) +
           "\n";
}
