#include "facts.h"

#include "read_files.h"
#include "sha256.h"
#include "text_forms.h"

void add_fact(Facts& facts, const std::wstring& area, const std::wstring& what, const std::wstring& value) {
    const auto [place, is_new] = facts.try_emplace({area, what}, value);
    if (!is_new) {
        place->second += L" | " + value;
    }
}

void add_folder_fact(Facts& facts, const std::wstring& path) {
    add_fact(facts, L"files", path, L"folder");
}

void add_file_fact(Facts& facts, const std::wstring& path, const std::optional<std::string>& bytes) {
    add_fact(facts, L"files", path,
             bytes ? std::to_wstring(bytes->size()) + L" bytes, SHA-256 " + wide_from_utf8(sha256(*bytes))
                   : L"cannot be read");
}

void add_copy_fact(Facts& facts, const std::wstring& path, const std::wstring& original) {
    const std::optional<std::string> bytes = read_file(original);
    if (bytes) {
        add_file_fact(facts, path, bytes);
    } else {
        add_fact(facts, L"files", path, L"a copy of " + original + L", which cannot be read");
    }
}

void add_key_facts(Facts& facts, const std::wstring& area, const RegistryKey& key) {
    const std::wstring view = key.is_32_bit_view ? L" (32-bit view)" : L"";
    for (const RegistryValue& value : key.values) {
        add_fact(facts, area,
                 L"HKLM\\" + key.path + L": " + (value.name.empty() ? L"(default)" : value.name) + view,
                 registry_type_name(value.type) + L" " + value.text);
    }
}

/// Adds facts of one area, by name and value.
auto adder(Facts& facts, const wchar_t* area) {
    return [&facts, area](const wchar_t* what, const std::wstring& value) {
        add_fact(facts, area, what, value);
    };
}

void add_service_facts(Facts& facts, const Service& service) {
    const auto add = adder(facts, L"service");
    add(L"name", service.name);
    add(L"display name", service.display_name);
    add(L"description", service.description);
    add(L"program", service.program);
    add(L"account", service.account);
    add(L"start type", service.start_type);
    add(L"state", service.state);
    add(L"type", std::to_wstring(service.service_type));
    add(L"error control", std::to_wstring(service.error_control));
    add(L"load order group", service.load_order_group);
    add(L"dependencies", service.has_dependencies ? L"some" : L"none");
    add(L"reset period", std::to_wstring(service.reset_period_seconds) + L" s");
    std::wstring actions;
    for (const ServiceAction& action : service.actions) {
        actions += (actions.empty() ? L"" : L", ") + action.kind + L" after " +
                   std::to_wstring(action.delay_ms) + L" ms";
    }
    add(L"after a failure", actions);
}

void add_task_facts(Facts& facts, const ScheduledTask& task) {
    const auto add = adder(facts, L"update task");
    add(L"name", task.name);
    add(L"runs", task.runs);
    add(L"schedule", task.schedule);
    add(L"account", task.account);
    add(L"run level", task.run_level);
    if (!task.recorded.empty()) {
        add(L"recorded command", task.recorded);
    }
}

void add_shortcut_facts(Facts& facts, const Shortcut& shortcut) {
    const auto add = adder(facts, L"shortcut");
    add(L"file", shortcut.path);
    add(L"target", shortcut.target);
    add(L"arguments", shortcut.arguments);
    add(L"description", shortcut.description);
    add(L"icon", shortcut.icon + L", " + std::to_wstring(shortcut.icon_index));
    add(L"working folder", shortcut.working_folder);
}

void add_pending_fact(Facts& facts, const PendingMove& move) {
    add_fact(facts, L"at the next start", move.from, move.to.empty() ? L"deleted" : L"moved to " + move.to);
}
