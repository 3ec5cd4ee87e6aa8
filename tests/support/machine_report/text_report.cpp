#include "text_report.h"

#include <algorithm>

#include "text_forms.h"

namespace {

// Every section appends its lines to the report.

void heading(std::wstring& report, const std::wstring& text) {
    report += L"\n" + text + L"\n" + std::wstring(text.size(), L'-') + L"\n";
}

void line(std::wstring& report, const std::wstring& label, const std::wstring& text) {
    report += L"  " + padded(label, 18) + L" " + text + L"\n";
}

void write_tree(std::wstring& report, const FolderTree& tree) {
    uint64_t total_bytes = 0;
    size_t files = 0;
    size_t widest = 0;
    for (const TreeEntry& entry : tree.entries) {
        widest = std::max(widest, entry.name.size() + static_cast<size_t>(entry.depth) * 2);
        if (!entry.is_folder) {
            total_bytes += entry.size_bytes;
            ++files;
        }
    }
    report += L"  " + tree.root + L"   (" + std::to_wstring(files) + (files == 1 ? L" file, " : L" files, ") +
              with_thousands(total_bytes) + L" bytes)\n";
    for (const TreeEntry& entry : tree.entries) {
        const std::wstring name = std::wstring(static_cast<size_t>(entry.depth) * 2, L' ') + entry.name;
        report += L"    ";
        if (entry.is_link) {
            report += name + L"  (link)";
        } else if (entry.is_folder) {
            report += name + L"\\";
        } else {
            report += padded(name, widest) + padded_left(with_thousands(entry.size_bytes), 14);
        }
        report += L"\n";
    }
}

void write_key(std::wstring& report, const RegistryKey& key) {
    report += L"  " + key.label + (key.is_32_bit_view ? L"   (32-bit view)" : L"") + L"\n    HKLM\\" +
              key.path + L"\n";
    size_t widest = 0;
    for (const RegistryValue& value : key.values) {
        widest = std::max(widest, value.name.empty() ? 9 : value.name.size());
    }
    for (const RegistryValue& value : key.values) {
        report += L"      " + padded(value.name.empty() ? L"(default)" : value.name, widest) + L"  " +
                  padded(registry_type_name(value.type), 9) + L"  " + value.text + L"\n";
    }
}

void write_keys(std::wstring& report, const std::wstring& title, const std::vector<RegistryKey>& keys) {
    if (keys.empty()) {
        return;
    }
    heading(report, title);
    for (const RegistryKey& key : keys) {
        write_key(report, key);
    }
}

void write_service(std::wstring& report, const Service& service) {
    heading(report, L"Service");
    line(report, L"Name", service.name);
    line(report, L"State", service.state);
    line(report, L"Display name", service.display_name);
    line(report, L"Description", service.description);
    line(report, L"Program", service.program);
    line(report, L"Start", service.start_type);
    line(report, L"Account", service.account);
    if (!service.has_failure_actions) {
        line(report, L"After a failure", L"nothing stored (Wine does not keep failure actions)");
        return;
    }
    std::wstring actions;
    for (const ServiceAction& action : service.actions) {
        actions += (actions.empty() ? L"" : L", ") + action.kind + L" after " +
                   std::to_wstring(action.delay_ms) + L" ms";
    }
    line(report, L"After a failure", actions);
    line(report, L"Count forgotten", L"after " + std::to_wstring(service.reset_period_seconds) + L" s");
}

void write_task(std::wstring& report, const ScheduledTask& task) {
    const bool is_recorded = !task.recorded.empty();
    heading(report,
            is_recorded ? L"Scheduled task (as recorded in place of schtasks.exe)" : L"Scheduled task");
    line(report, L"Name", task.name);
    line(report, L"Runs", task.runs);
    line(report, L"When", task.schedule);
    line(report, L"Account", task.account + L", run level " + task.run_level);
    if (is_recorded) {
        line(report, L"Command", task.recorded);
    }
}

void write_shortcut(std::wstring& report, const Shortcut& shortcut) {
    heading(report, L"Desktop shortcut");
    line(report, L"File", shortcut.path);
    line(report, L"Target", shortcut.target + (shortcut.arguments.empty() ? L"" : L" ") + shortcut.arguments);
    line(report, L"Description", shortcut.description);
    line(report, L"Icon", shortcut.icon + L", " + std::to_wstring(shortcut.icon_index));
    line(report, L"Working folder", shortcut.working_folder);
}

void write_manifests(std::wstring& report, const std::vector<TextFile>& manifests) {
    if (manifests.empty()) {
        return;
    }
    heading(report, L"Native messaging manifests");
    for (const TextFile& file : manifests) {
        report += L"  " + file.path + L"\n";
        std::wstring text = wide_from_utf8(file.bytes);
        text.erase(std::remove(text.begin(), text.end(), L'\r'), text.end());
        for (size_t start = 0; start < text.size();) {
            const size_t end = std::min(text.find(L'\n', start), text.size());
            report += L"    " + text.substr(start, end - start) + L"\n";
            start = end + 1;
        }
    }
}

void write_pending(std::wstring& report, const std::vector<PendingMove>& moves) {
    if (moves.empty()) {
        return;
    }
    heading(report, L"At the next start of Windows");
    for (const PendingMove& move : moves) {
        report += move.to.empty() ? L"  delete  " + move.from + L"\n"
                                  : L"  rename  " + move.from + L"\n      to  " + move.to + L"\n";
    }
}

} // namespace

std::wstring text_report(const MachineState& state) {
    std::wstring report = L"What the machine holds of the two products\n"
                          L"==========================================\n";
    if (is_empty(state)) {
        report += L"\nNothing: no files, no registry values, no service, no scheduled task,\n"
                  L"no shortcut, nothing waiting for a restart.\n";
    }
    if (!state.trees.empty()) {
        heading(report, L"Files");
        for (const FolderTree& tree : state.trees) {
            write_tree(report, tree);
        }
    }
    write_keys(report, L"Add/Remove Programs", state.uninstall);
    if (state.service) {
        write_service(report, *state.service);
    }
    if (state.task) {
        write_task(report, *state.task);
    }
    if (state.shortcut) {
        write_shortcut(report, *state.shortcut);
    }
    write_keys(report, L"Native messaging hosts", state.hosts);
    write_manifests(report, state.manifests);
    write_keys(report, L"Browser policies and external extensions", state.policies);
    write_pending(report, state.pending);
    if (!state.left_behind.empty()) {
        heading(report, L"Empty folders and keys");
        for (const std::wstring& place : state.left_behind) {
            report += L"  " + place + L"\n";
        }
    }
    return report;
}
