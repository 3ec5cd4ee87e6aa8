// Linkward's service on the machine of a test: its program, its registration and
// what the service control manager says about it.
#pragma once

#include <string>
#include <vector>

#include <windows.h>

#include "common/owned.h"
#include "recorded_reports.h"

using Pauses = std::vector<unsigned long>;

inline constexpr wchar_t service_name[] = L"VeyraLinkward";

/// The service's program, as the service is registered with it.
inline const std::wstring service_program =
    L"C:\\Program Files\\Brackenfold\\Veyra Linkward\\VeyraLinkward.exe";

/// Puts the sample service's program in its place, with a line that makes it behave in a special way.
void deploy_program(const std::string& behaviour = "");

/// What a registration returned and reported.
struct Registration {
    bool result = false;
    Reports reports;
};

Registration register_service();

/// Opens the service; null when there is none.
OwnedService open_service(DWORD access);

/// The service's state in a word, "absent" when there is no service.
std::wstring state_of_service();
