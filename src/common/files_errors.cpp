#include "common/files_errors.h"

#include <string>
#include <windows.h>

#include "common/text.h"

namespace fs = std::filesystem;

namespace {

std::wstring system_message(DWORD error) {
    wchar_t buffer[512] = {};
    // MAX_WIDTH_MASK folds the line breaks inside a text into blanks.
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK, nullptr,
        error, 0, buffer, static_cast<DWORD>(std::size(buffer)), nullptr);
    std::wstring text(buffer, length);
    for (wchar_t& c : text) {
        if (c < L' ') {
            c = L' ';
        }
    }
    text.erase(text.find_last_not_of(L' ') + 1);
    return text;
}

class Win32Category : public std::error_category {
  public:
    [[nodiscard]] const char* name() const noexcept override { return "win32"; }

    [[nodiscard]] std::string message(int value) const override {
        const std::string text = to_utf8(system_message(static_cast<DWORD>(value)));
        return text.empty() ? "error " + std::to_string(static_cast<DWORD>(value)) : text;
    }

    [[nodiscard]] std::error_condition default_error_condition(int value) const noexcept override {
        switch (static_cast<DWORD>(value)) {
        case ERROR_ACCESS_DENIED:
        case ERROR_SHARING_VIOLATION:
            return std::errc::permission_denied;
        case ERROR_FILE_EXISTS:
        case ERROR_ALREADY_EXISTS:
            return std::errc::file_exists;
        default:
            return is_not_found(static_cast<DWORD>(value)) ? std::errc::no_such_file_or_directory
                                                           : std::error_condition(value, *this);
        }
    }
};

std::error_code win32_code(DWORD error) {
    return {static_cast<int>(error), win32_category()};
}

} // namespace

const std::error_category& win32_category() {
    // Never destroyed: a worker may still throw while the process ends.
    static const Win32Category& category = *new Win32Category;
    return category;
}

void throw_file_error(const char* operation, unsigned long error, const fs::path& path) {
    throw fs::filesystem_error(operation, path, win32_code(error));
}

void throw_file_error(const char* operation, unsigned long error, const fs::path& from, const fs::path& to) {
    throw fs::filesystem_error(operation, from, to, win32_code(error));
}

bool is_not_found(unsigned long error) {
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_FILENAME_EXCED_RANGE:
    case ERROR_DIRECTORY:
        return true;
    default:
        return false;
    }
}
