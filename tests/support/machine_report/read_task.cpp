#include "read_task.h"

#include <algorithm>

#include <shellapi.h>

#include "read_files.h"
#include "text_forms.h"

namespace {

std::vector<std::wstring> arguments_of(const std::wstring& command_line) {
    int count = 0;
    LPWSTR* parts = CommandLineToArgvW(command_line.c_str(), &count);
    std::vector<std::wstring> arguments(parts, parts + (parts == nullptr ? 0 : count));
    LocalFree(parts);
    return arguments;
}

bool has_switch(const std::vector<std::wstring>& arguments, const wchar_t* name) {
    return std::any_of(arguments.begin(), arguments.end(), [name](const std::wstring& argument) {
        return _wcsicmp(argument.c_str(), name) == 0;
    });
}

std::wstring value_of(const std::vector<std::wstring>& arguments, const wchar_t* name) {
    for (size_t i = 0; i + 1 < arguments.size(); ++i) {
        if (_wcsicmp(arguments[i].c_str(), name) == 0) {
            return arguments[i + 1];
        }
    }
    return {};
}

} // namespace

std::vector<std::wstring> read_task_calls() {
    std::vector<std::wstring> calls;
    const std::string log = read_file(L"C:\\schtasks.log").value_or("");
    for (size_t start = 0; start < log.size();) {
        const size_t end = std::min(log.find("\r\n", start), log.size());
        calls.push_back(wide_from_utf8(log.substr(start, end - start)));
        start = end + 2;
    }
    return calls;
}

std::optional<ScheduledTask> task_after(const std::vector<std::wstring>& calls) {
    std::optional<ScheduledTask> task;
    for (const std::wstring& call : calls) {
        const std::vector<std::wstring> arguments = arguments_of(call);
        const std::wstring name = value_of(arguments, L"/TN");
        if (has_switch(arguments, L"/Create")) {
            task = ScheduledTask{name,
                                 value_of(arguments, L"/TR"),
                                 value_of(arguments, L"/SC") + L" " + value_of(arguments, L"/D") + L" " +
                                     value_of(arguments, L"/ST"),
                                 value_of(arguments, L"/RU"),
                                 value_of(arguments, L"/RL"),
                                 call};
        } else if (has_switch(arguments, L"/Delete") && task &&
                   _wcsicmp(task->name.c_str(), name.c_str()) == 0) {
            task.reset();
        }
    }
    return task;
}
