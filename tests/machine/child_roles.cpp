#include "child_roles.h"

#include <cstdint>
#include <cstring>
#include <doctest/doctest.h>
#include <stdexcept>

#include <windows.h>

#include "app/elevation.h"
#include "common/quiet_thread.h"
#include "console/uninstall.h"
#include "intercepted_call.h"
#include "linkward/uninstall.h"
#include "runs/install_run.h"
#include "runs/uninstall_run.h"
#include "test_files.h"

// Under the name that the compiler knows it by.
extern "C" std::uintptr_t g_stack_guard asm("__stack_chk_guard");

namespace {

std::wstring role() {
    wchar_t name[64] = {};
    GetEnvironmentVariableW(role_variable, name, 64);
    return name;
}

/// Without doctest, which does not run in a child.
void write_bytes(const wchar_t* path, const std::string& bytes) {
    const OwnedFile file(
        CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

template<typename Removal>
int remove_product(Removal removal) {
    RecordedReports reports;
    const int result = static_cast<int>(removal(reports.progress));
    std::string lines;
    for (const Report& report : reports.all) {
        lines += (report.ok ? "+" : "-") + report.text + "\n";
    }
    write_bytes(reports_file, lines);
    return result;
}

void fail() {
    throw std::runtime_error("nobody catches this");
}

void fail_without_a_handler() noexcept { // NOLINT(bugprone-exception-escape): that is what is tested
    fail();
}

DWORD WINAPI throwing_attributes(LPCWSTR /*path*/) {
    // No step catches this one.
    throw 7;
}

int throw_in_run(LPTHREAD_START_ROUTINE run) {
    make_thread_quiet();
    // What InterceptedCall checks has no test around it here.
    doctest::Context asserts;
    asserts.setAsDefaultForAssertsOutOfTestCases();
    const InterceptedCall attributes("GetFileAttributesW", throwing_attributes);
    g_install_console = true;
    const OwnedHandle thread(CreateThread(nullptr, 0, run, nullptr, 0, nullptr));
    WaitForSingleObject(thread.get(), INFINITE);
    write_bytes(reports_file, "the run came back");
    return 0;
}

int overrun_stack() {
    char room[16];
    // Not known to the compiler, which would complain.
    volatile std::size_t too_much = 64;
    std::memset(room, 'x', too_much);
    return room[0];
}

} // namespace

std::vector<std::wstring> relaunched_arguments() {
    return {L"ignored.exe", L"--source", L"D:\\My media", L"", L"-s", L"caf\u00E9"};
}

std::optional<int> play_child_role() {
    const std::wstring name = role();
    if (name.empty()) {
        return std::nullopt;
    }
    if (name == role_tell_elevation) {
        return is_elevated() ? 1 : 0;
    }
    if (name == role_tell_second_instance) {
        return is_second_instance() ? 1 : 0;
    }
    if (name == role_tell_error_mode) {
        return static_cast<int>(GetErrorMode());
    }
    if (name == role_relaunch) {
        // First of all: the second instance must not start a third.
        SetEnvironmentVariableW(role_variable, role_relaunched);
        relaunch_elevated(relaunched_arguments());
        return is_there(relaunched_file) ? 0 : 1;
    }
    if (name == role_relaunched) {
        Sleep(relaunched_life_ms);
        write_bytes(relaunched_file, utf8_from_wide(GetCommandLineW()));
        return 7;
    }
    if (name == role_remove_linkward) {
        return remove_product(uninstall_linkward);
    }
    if (name == role_remove_console) {
        return remove_product(uninstall_fwc);
    }
    if (name == role_throw_in_install_run) {
        return throw_in_run(install_thread_proc);
    }
    if (name == role_throw_in_uninstall_run) {
        return throw_in_run(uninstall_thread_proc);
    }
    if (name == role_throw) {
        make_thread_quiet();
        fail_without_a_handler();
    }
    if (name == role_overrun_stack) {
        // A call that cannot be inlined: the guard is looked at when it returns.
        int (*volatile mistake)() = overrun_stack;
        return mistake();
    }
    if (name == role_tell_stack_guard) {
        return (g_stack_guard & 0xff) == 0 ? static_cast<int>(g_stack_guard >> 8 & 0x7fffffff) : 0;
    }
    return 99;
}

Reports reports_of_child() {
    Reports reports;
    const std::string lines = bytes_of(reports_file);
    for (size_t start = 0; start < lines.size();) {
        const size_t end = lines.find('\n', start);
        reports.push_back({lines.substr(start + 1, end - start - 1), lines[start] == '+'});
        start = end + 1;
    }
    return reports;
}
