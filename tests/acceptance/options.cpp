#include "options.h"

#include <algorithm>
#include <cwchar>

namespace {

constexpr size_t most_digits = 5;

bool read_limit(const std::wstring& text, AcceptanceOptions& options) {
    const bool is_number =
        !text.empty() && text.size() <= most_digits &&
        std::all_of(text.begin(), text.end(), [](wchar_t digit) { return digit >= L'0' && digit <= L'9'; });
    options.limit_s = is_number ? std::wcstoul(text.c_str(), nullptr, 10) : 0;
    return options.limit_s > 0;
}

// The text that an option with a value sets; null for any other word.
std::wstring* text_of(const std::wstring& option, AcceptanceOptions& options) {
    return option == L"--program"      ? &options.program
           : option == L"--report"     ? &options.report
           : option == L"--after-step" ? &options.after_step
                                       : nullptr;
}

} // namespace

AcceptanceOptions read_options(const std::vector<std::wstring>& arguments) {
    AcceptanceOptions options;
    for (size_t i = 0; i < arguments.size() && options.complaint.empty(); ++i) {
        const std::wstring& word = arguments[i];
        std::wstring* const text = text_of(word, options);
        if (text != nullptr || word == L"--limit") {
            const std::wstring value = ++i < arguments.size() ? arguments[i] : L"";
            if (value.empty()) {
                options.complaint = word + L" needs a value";
            } else if (text != nullptr) {
                *text = value;
            } else if (!read_limit(value, options)) {
                options.complaint = L"--limit needs a number of seconds, not '" + value + L"'";
            }
        } else if (word == L"--help") {
            options.wants_help = true;
        } else if (word == L"--this-machine-may-be-thrown-away") {
            options.may_be_thrown_away = true;
        } else if (word == L"--remove-first") {
            options.removes_first = true;
        } else {
            options.complaint = L"unknown argument '" + word + L"'";
        }
    }
    return options;
}

std::wstring help_text() {
    return L"Installs and removes the sample products on this machine, in every way, and compares\n"
           L"what the machine holds after each step with what it must hold.\n"
           L"\n"
           L"usage: acceptance --this-machine-may-be-thrown-away [OPTION ...]\n"
           L"\n"
           L"  --program FILE        judge this installer instead of the one in the kit\n"
           L"  --report FILE         write the report there; acceptance.json beside this program\n"
           L"                        when left out\n"
           L"  --remove-first        remove the products when they are installed; without it, a\n"
           L"                        machine that has them is refused\n"
           L"  --limit SECONDS       end a program that takes longer; 300 when left out\n"
           L"  --after-step COMMAND  run COMMAND with cmd.exe after each step, before the machine is\n"
           L"                        looked at; ACCEPTANCE_STEP holds the step's name\n"
           L"  --help                show this text\n"
           L"\n"
           L"It needs administrator rights and a machine that nobody else uses: the installer ends\n"
           L"running browsers without asking, installs a service and writes below\n"
           L"HKEY_LOCAL_MACHINE. At the end the products are removed again.\n"
           L"\n"
           L"Exit code: 0 all as expected, 1 something is different, 2 the arguments make no sense\n"
           L"or a file is missing, 3 not on this machine (no rights, or the products are installed).\n";
}
