#include "settled_state.h"

#include "product_facts.h"
#include "read_service.h"

namespace {

constexpr DWORD moment_ms = 50;

bool is_changing(const std::optional<Service>& service) {
    return service && (service->state == L"starting" || service->state == L"stopping");
}

} // namespace

MachineState read_settled_state(DWORD limit_s) {
    const ULONGLONG end_ms = GetTickCount64() + ULONGLONG{limit_s} * 1000;
    while (is_changing(read_service(service_name)) && GetTickCount64() < end_ms) {
        Sleep(moment_ms); // Windows has no message for it
    }
    return read_machine_state();
}
