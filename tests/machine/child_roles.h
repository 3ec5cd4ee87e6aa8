// What this test program does when a test has started it as another process.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "recorded_reports.h"

/// The environment variable that names a role.
inline constexpr wchar_t role_variable[] = L"ORVANTA_TEST_ROLE";

/// Exits with 1 when it counts as elevated, else with 0.
inline constexpr wchar_t role_tell_elevation[] = L"tell elevation";
/// Exits with 1 when it counts as a second instance, else with 0.
inline constexpr wchar_t role_tell_second_instance[] = L"tell second instance";
/// Exits with the error mode that it was started with.
inline constexpr wchar_t role_tell_error_mode[] = L"tell error mode";
/// Relaunches itself elevated with `relaunched_arguments`, the second instance in the role below.
inline constexpr wchar_t role_relaunch[] = L"relaunch";
/// Writes its command line to `relaunched_file` and ends after `relaunched_life_ms` with exit code 7.
inline constexpr wchar_t role_relaunched[] = L"relaunched";
/// Remove a product, write the reports to `reports_file` and exit with the result.
inline constexpr wchar_t role_remove_linkward[] = L"remove linkward";
inline constexpr wchar_t role_remove_console[] = L"remove console";
/// Lets an exception out of a function that must not, as the installer's entry point would.
inline constexpr wchar_t role_throw[] = L"throw";
/// The same out of a step of a run, on a thread of its own; never comes back to write `reports_file`.
inline constexpr wchar_t role_throw_in_install_run[] = L"throw in install run";
inline constexpr wchar_t role_throw_in_uninstall_run[] = L"throw in uninstall run";
/// Writes beyond its variables and returns, as a mistake would have it.
inline constexpr wchar_t role_overrun_stack[] = L"overrun stack";
/// Exits with a part of the value that guards its stack, or with 0 when a text could hold that value.
inline constexpr wchar_t role_tell_stack_guard[] = L"tell stack guard";

inline constexpr wchar_t relaunched_file[] = L"C:\\relaunched.txt";
inline constexpr wchar_t reports_file[] = L"C:\\reports.txt";
inline constexpr unsigned long relaunched_life_ms = 400;

/// What the program in the role "relaunch" passes on; the first one is the program's name.
std::vector<std::wstring> relaunched_arguments();

/// Plays the role that the environment names and gives the exit code; nothing without one.
std::optional<int> play_child_role();

/// The reports of a child that has removed a product.
Reports reports_of_child();
