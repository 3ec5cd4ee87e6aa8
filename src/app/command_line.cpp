#include "app/command_line.h"

#include <memory>

#include <windows.h>
#include <shellapi.h>

std::optional<std::vector<std::wstring>> split_command_line(const wchar_t* command_line) {
    int count = 0;
    const std::unique_ptr<LPWSTR, decltype(&LocalFree)> arguments(CommandLineToArgvW(command_line, &count),
                                                                  &LocalFree);
    if (!arguments) {
        return std::nullopt;
    }
    return std::vector<std::wstring>(arguments.get(), arguments.get() + count);
}

Options parse_options(const std::vector<std::wstring>& arguments) {
    Options options;
    for (size_t i = 1; i < arguments.size(); ++i) {
        const std::wstring& argument = arguments[i];
        if (argument == L"--install" || argument == L"-i") {
            options.install = true;
        } else if (argument == L"--uninstall" || argument == L"-u") {
            options.uninstall = true;
        } else if (argument == L"--silent" || argument == L"-s") {
            options.silent = true;
        } else if (argument == L"--uninstall-gui") {
            options.uninstall_gui = true;
        } else if (argument == L"--source" && i + 1 < arguments.size()) {
            // Whatever follows is the folder, even when it looks like an option.
            ++i;
            options.source_dir = arguments[i];
        }
    }
    return options;
}

std::wstring folder_of_program(const std::wstring& program_path) {
    const size_t separator = program_path.find_last_of(L"\\/");
    if (separator == std::wstring::npos) {
        return {};
    }
    return program_path.substr(0, program_path.find_last_not_of(L"\\/", separator) + 1);
}
