// Sample of the protection service: a real service of its own process that
// answers the service control manager and does nothing else.
#include <windows.h>

#include "service_behaviour.h"

namespace {

// All three are set on the service thread before the control handler can be called.
ServiceBehaviour g_behaviour;
SERVICE_STATUS_HANDLE g_status_handle = nullptr;
HANDLE g_stop_asked = nullptr;

void report_state(DWORD state, DWORD error) {
    SERVICE_STATUS status = {};
    status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
    status.dwCurrentState = state;
    status.dwControlsAccepted = state == SERVICE_RUNNING ? SERVICE_ACCEPT_STOP | SERVICE_ACCEPT_SHUTDOWN : 0;
    status.dwWin32ExitCode = error;
    SetServiceStatus(g_status_handle, &status);
}

DWORD WINAPI handle_control(DWORD control, DWORD /*event_type*/, void* /*event_data*/, void* /*context*/) {
    switch (control) {
    case SERVICE_CONTROL_STOP:
    case SERVICE_CONTROL_SHUTDOWN:
        if (g_behaviour.ignore_stop_ms == 0) {
            report_state(SERVICE_STOP_PENDING, NO_ERROR);
        }
        SetEvent(g_stop_asked);
        return NO_ERROR;
    case SERVICE_CONTROL_INTERROGATE:
        return NO_ERROR;
    default:
        return ERROR_CALL_NOT_IMPLEMENTED;
    }
}

void WINAPI ServiceMain(DWORD /*count*/, LPWSTR* arguments) {
    g_stop_asked = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    g_status_handle = RegisterServiceCtrlHandlerExW(arguments[0], handle_control, nullptr);
    if (g_behaviour.start_error != 0) {
        report_state(SERVICE_STOPPED, g_behaviour.start_error);
        return;
    }
    report_state(SERVICE_RUNNING, NO_ERROR);
    WaitForSingleObject(g_stop_asked, INFINITE);
    Sleep(g_behaviour.ignore_stop_ms);
    report_state(SERVICE_STOPPED, NO_ERROR);
}

} // namespace

int main() {
    g_behaviour = read_service_behaviour();
    if (g_behaviour.exit_at_start) {
        return 1;
    }
    wchar_t name[] = L"VeyraLinkward";
    const SERVICE_TABLE_ENTRYW services[] = {{name, ServiceMain}, {nullptr, nullptr}};
    // Started by hand instead of by the service control manager, this fails.
    return StartServiceCtrlDispatcherW(services) != FALSE ? 0 : 2;
}
