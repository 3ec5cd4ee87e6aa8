#include "linkward/service.h"

#include <array>
#include <string>

#include "common/owned.h"
#include "common/pause.h"
#include "common/text.h"
#include "linkward/locations.h"
#include "linkward/product.h"

namespace {

constexpr DWORD reinstall_stop_pause_ms = 1000;
constexpr DWORD removal_stop_pause_ms = 2000;
constexpr int name_release_attempts = 10;
constexpr DWORD name_release_pause_ms = 500;

/// Asks the service to stop, gives it time and deletes it. Results are ignored: it must go in any case.
void stop_and_delete(OwnedService service, DWORD pause_ms) {
    SERVICE_STATUS status = {};
    ControlService(service.get(), SERVICE_CONTROL_STOP, &status);
    g_pause(pause_ms);
    DeleteService(service.get());
}

/// A deleted service keeps its name until the last handle to it is closed; creation fails as long as it does.
void wait_for_name_release(SC_HANDLE manager) {
    for (int attempt = 0; attempt < name_release_attempts; ++attempt) {
        if (!OwnedService(OpenServiceW(manager, linkward_service_name, SERVICE_QUERY_STATUS))) {
            return;
        }
        g_pause(name_release_pause_ms);
    }
}

void remove_earlier_service(SC_HANDLE manager) {
    OwnedService service(OpenServiceW(manager, linkward_service_name, SERVICE_ALL_ACCESS));
    if (!service) {
        return;
    }
    stop_and_delete(std::move(service), reinstall_stop_pause_ms);
    wait_for_name_release(manager);
}

OwnedService create_service(SC_HANDLE manager, const std::wstring& program_path) {
    return OwnedService(CreateServiceW(manager, linkward_service_name, linkward_display_name,
                                       SERVICE_ALL_ACCESS, SERVICE_WIN32_OWN_PROCESS, SERVICE_AUTO_START,
                                       SERVICE_ERROR_NORMAL, program_path.c_str(), nullptr, nullptr, nullptr,
                                       nullptr, nullptr));
}

/// Results are ignored: without description and restart policy the service still protects.
void describe_service(SC_HANDLE service) {
    std::wstring text = L"Veyra Linkward - Real-time website threat classification";
    SERVICE_DESCRIPTIONW description = {text.data()};
    ChangeServiceConfig2W(service, SERVICE_CONFIG_DESCRIPTION, &description);

    std::array<SC_ACTION, 3> actions = {
        {{SC_ACTION_RESTART, 3000}, {SC_ACTION_RESTART, 5000}, {SC_ACTION_RESTART, 10000}}};
    SERVICE_FAILURE_ACTIONSW failure_actions = {};
    failure_actions.dwResetPeriod = 86400; // one day, in seconds
    failure_actions.cActions = static_cast<DWORD>(actions.size());
    failure_actions.lpsaActions = actions.data();
    ChangeServiceConfig2W(service, SERVICE_CONFIG_FAILURE_ACTIONS, &failure_actions);
}

void start_service(SC_HANDLE service, const ProgressFn& progress) {
    if (StartServiceW(service, 0, nullptr) != FALSE) {
        progress("Service installed and started", true);
        return;
    }
    const DWORD error = GetLastError();
    if (error == ERROR_SERVICE_ALREADY_RUNNING) {
        progress("Service installed (already running)", true);
    } else {
        // It is installed and starts with Windows, so this is no failure of the installation.
        progress("Service installed but start failed (error " + std::to_string(error) + ")", true);
    }
}

} // namespace

bool register_linkward_service(const ProgressFn& progress) {
    const std::wstring program_path = linkward_service_program();
    const OwnedService manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CREATE_SERVICE));
    if (!manager) {
        const DWORD error = GetLastError();
        progress("Cannot open SCM (error " + std::to_string(error) + ")", false);
        return false;
    }
    remove_earlier_service(manager.get());
    const OwnedService service = create_service(manager.get(), program_path);
    if (!service) {
        const DWORD error = GetLastError();
        progress("CreateService failed (error " + std::to_string(error) + ", path: " + to_utf8(program_path) +
                     ")",
                 false);
        return false;
    }
    describe_service(service.get());
    start_service(service.get(), progress);
    return true;
}

void remove_linkward_service(const ProgressFn& progress) {
    if (const OwnedService manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS)); manager) {
        OwnedService service(OpenServiceW(manager.get(), linkward_service_name, SERVICE_ALL_ACCESS));
        if (service) {
            stop_and_delete(std::move(service), removal_stop_pause_ms);
        }
    }
    progress("Service removed", true);
}
