#include "common/quiet_thread.h"

#include <doctest/doctest.h>
#include <exception>

#include <windows.h>

#include "child_roles.h"
#include "started_program.h"
#include "test_files.h"

TEST_CASE("a quiet thread shows no box for critical errors and programs started from it are as before") {
    REQUIRE(SetThreadErrorMode(0, nullptr) != FALSE);
    make_thread_quiet();
    CHECK(GetThreadErrorMode() == (SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX));
    CHECK(GetErrorMode() == 0);
    CHECK(StartedProgram(test_program(), L"", {{role_variable, role_tell_error_mode}}).exit_code() == 0);
}

TEST_CASE("a quiet thread has the terminate handler that ends the process whatever it had before") {
    const std::terminate_handler other = [] {};
    std::set_terminate(other);
    make_thread_quiet();
    const bool is_other = std::get_terminate() == other;
    CHECK_FALSE(is_other);
}
