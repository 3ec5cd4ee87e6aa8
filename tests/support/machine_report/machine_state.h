// What a machine holds of the two products, as plain records. Read with Windows
// calls of its own and none of the installer's code, so that it can judge it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <windows.h>

struct TreeEntry {
    std::wstring path; ///< below the root of its tree
    std::wstring name; ///< last part of `path`
    int depth = 0;     ///< 0 for what lies in the root itself
    bool is_folder = false;
    bool is_link = false; ///< a link or junction; never entered
    uint64_t size_bytes = 0;
};

/// A folder and all that is in it, in the order of names, each folder followed by its contents.
struct FolderTree {
    std::wstring root;
    std::vector<TreeEntry> entries;
};

struct RegistryValue {
    std::wstring name; ///< empty for the default value
    DWORD type = REG_NONE;
    std::wstring text; ///< texts as they stand, numbers in decimal, anything else as hexadecimal bytes
};

struct RegistryKey {
    std::wstring label; ///< who it belongs to, such as a browser's name
    std::wstring path;  ///< below HKEY_LOCAL_MACHINE
    bool is_32_bit_view = false;
    std::vector<RegistryValue> values; ///< in the order of names
};

struct ServiceAction {
    std::wstring kind; ///< "restart", "reboot", "run", "none"
    DWORD delay_ms = 0;
};

struct Service {
    std::wstring name;
    std::wstring display_name;
    std::wstring description;
    std::wstring program; ///< the command line as it is stored
    std::wstring account;
    std::wstring start_type;
    std::wstring state;
    DWORD service_type = 0;
    DWORD error_control = 0;
    std::wstring load_order_group;
    bool has_dependencies = false;
    bool has_failure_actions = false; ///< false as well where the system does not keep them (Wine)
    DWORD reset_period_seconds = 0;
    std::vector<ServiceAction> actions;
};

struct ScheduledTask {
    std::wstring name;
    std::wstring runs;
    std::wstring schedule;
    std::wstring account;
    std::wstring run_level;
    std::wstring recorded; ///< the whole command line that made it, where a recorder took it down
};

struct Shortcut {
    std::wstring path;
    std::wstring target;
    std::wstring arguments;
    std::wstring description;
    std::wstring icon;
    int icon_index = 0;
    std::wstring working_folder;
};

struct TextFile {
    std::wstring path;
    std::string bytes;
};

struct PendingMove {
    std::wstring from;
    std::wstring to; ///< empty: deleted
};

struct MachineState {
    std::vector<FolderTree> trees;      ///< those with a file in them
    std::vector<RegistryKey> uninstall; ///< Add/Remove Programs
    std::vector<RegistryKey> hosts;     ///< native messaging
    std::vector<RegistryKey> policies; ///< extension policies and external extensions, also of other products
    std::vector<TextFile> manifests;   ///< the files that the native messaging keys name
    std::optional<Service> service;
    std::optional<ScheduledTask> task;
    std::optional<Shortcut> shortcut;
    std::vector<PendingMove> pending;      ///< at the next start of Windows
    std::vector<std::wstring> left_behind; ///< empty folders and keys
    std::vector<std::wstring> task_calls;  ///< every recorded call of schtasks.exe, oldest first
};

/// Reads all of it. Needs COM on the calling thread (single-threaded apartment).
MachineState read_machine_state();

/// True when there is nothing at all but what `left_behind` lists.
bool is_empty(const MachineState& state);
