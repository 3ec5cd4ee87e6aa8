#include "common/file_error.h"

#include <windows.h>

#include "common/text.h"

namespace {

std::string in_brackets(const std::wstring& path) {
    return " [" + to_utf8(path) + "]";
}

std::string error_text(const char* operation, DWORD code, const std::string& paths) {
    return std::string("filesystem error: ") + operation + ": " + system_error_text(code) + paths;
}

} // namespace

FileError::FileError(const char* operation, unsigned long code, const std::wstring& path)
    : std::runtime_error(error_text(operation, code, in_brackets(path))), code_(code) {
}

FileError::FileError(const char* operation, unsigned long code, const std::wstring& from,
                     const std::wstring& to)
    : std::runtime_error(error_text(operation, code, in_brackets(from) + in_brackets(to))), code_(code) {
}

std::string system_error_text(unsigned long code) {
    wchar_t buffer[512] = {};
    // MAX_WIDTH_MASK folds the line breaks inside a text into blanks.
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK, nullptr,
        code, 0, buffer, static_cast<DWORD>(std::size(buffer)), nullptr);
    std::wstring text(buffer, length);
    for (wchar_t& c : text) {
        if (c < L' ') {
            c = L' ';
        }
    }
    text.erase(text.find_last_not_of(L' ') + 1);
    return text.empty() ? "error " + std::to_string(code) : to_utf8(text);
}

bool is_not_found(unsigned long code) {
    switch (code) {
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
