#pragma once

#include <optional>
#include <string>
#include <vector>

/// What the command line asks for. Flags only ever turn on.
struct Options {
    bool install = false;
    bool uninstall = false;
    bool silent = false;
    bool uninstall_gui = false;
    /// The folder after "--source", as it was written; absent when the option is.
    std::optional<std::wstring> source_dir;
};

/// Splits a command line as Windows does, the program's name included; nothing when Windows cannot.
std::optional<std::vector<std::wstring>> split_command_line(const wchar_t* command_line);

/// Reads the options; the first argument, the program's name, is skipped and unknown ones are ignored.
Options parse_options(const std::vector<std::wstring>& arguments);

/// The folder that a program lies in, from its full path: the file name goes, and every backslash and slash
/// before it.
std::wstring folder_of_program(const std::wstring& program_path);
