#include "console_installation.h"

#include "common/installation_medium.h"
#include "common/text.h"
#include "console/install.h"
#include "file_error_text.h"

ConsoleInstallation install_console(const std::wstring& from) {
    g_source_dir = from;
    RecordedReports reports;
    const bool result = install_fwc(reports.progress);
    return {result, reports.all};
}

Report copy_failure(const wchar_t* name, DWORD error, const std::wstring& from) {
    const std::wstring below = std::wstring(L"\\") + name;
    return {"Failed to copy " + to_utf8(name) + ": " +
                file_error_text("copy_file", error, {from + below, console_dir + below}),
            false};
}
