#pragma once

#include "machine_state.h"

/// Configuration and state as the service control manager gives them; nothing when there is no such service.
std::optional<Service> read_service(const wchar_t* name);
