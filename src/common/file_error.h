#pragma once

#include <stdexcept>
#include <string>

/// What the functions of files.h throw. The text is UTF-8 on one line, the same with every compiler:
/// "filesystem error: ", the operation, the system's reason and one or two paths in brackets. A character of
/// a path that is none (an unpaired surrogate) is shown as U+FFFD.
class FileError : public std::runtime_error {
  public:
    /// `code` is a Win32 error number.
    FileError(const char* operation, unsigned long code, const std::wstring& path);
    FileError(const char* operation, unsigned long code, const std::wstring& from, const std::wstring& to);

    [[nodiscard]] unsigned long code() const noexcept { return code_; }

  private:
    unsigned long code_;
};

/// The system's words for a Win32 error number, in UTF-8 on one line; "error N" where it has none. (Some of
/// its texts hold line breaks, which a report to the page cannot carry.)
std::string system_error_text(unsigned long code);

/// Whether a Win32 error number means that there is nothing at a path.
bool is_not_found(unsigned long code);
