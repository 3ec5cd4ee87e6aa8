#include "read_service.h"

namespace {

const wchar_t* start_type_text(DWORD type) {
    switch (type) {
    case SERVICE_AUTO_START:
        return L"automatic";
    case SERVICE_DEMAND_START:
        return L"manual";
    case SERVICE_DISABLED:
        return L"disabled";
    default:
        return L"driver";
    }
}

const wchar_t* state_text(DWORD state) {
    switch (state) {
    case SERVICE_STOPPED:
        return L"stopped";
    case SERVICE_START_PENDING:
        return L"starting";
    case SERVICE_STOP_PENDING:
        return L"stopping";
    case SERVICE_RUNNING:
        return L"running";
    default:
        return L"other";
    }
}

const wchar_t* action_text(SC_ACTION_TYPE type) {
    switch (type) {
    case SC_ACTION_RESTART:
        return L"restart";
    case SC_ACTION_REBOOT:
        return L"reboot";
    case SC_ACTION_RUN_COMMAND:
        return L"run";
    default:
        return L"none";
    }
}

std::wstring text_or_empty(const wchar_t* text) {
    return text == nullptr ? L"" : text;
}

// QueryServiceConfigW and its second form fill a record followed by the texts it points to.
template<typename Query>
std::vector<BYTE> query_record(Query query) {
    DWORD size = 0;
    query(nullptr, 0, &size);
    std::vector<BYTE> record(size);
    if (size == 0 || query(record.data(), size, &size) == FALSE) {
        record.clear();
    }
    return record;
}

void read_config(SC_HANDLE handle, Service& service) {
    const std::vector<BYTE> record = query_record([handle](BYTE* to, DWORD size, DWORD* needed) {
        return QueryServiceConfigW(handle, reinterpret_cast<QUERY_SERVICE_CONFIGW*>(to), size, needed);
    });
    if (record.empty()) {
        return;
    }
    const auto* config = reinterpret_cast<const QUERY_SERVICE_CONFIGW*>(record.data());
    service.display_name = text_or_empty(config->lpDisplayName);
    service.program = text_or_empty(config->lpBinaryPathName);
    service.account = text_or_empty(config->lpServiceStartName);
    service.start_type = start_type_text(config->dwStartType);
    service.service_type = config->dwServiceType;
    service.error_control = config->dwErrorControl;
    service.load_order_group = text_or_empty(config->lpLoadOrderGroup);
    service.has_dependencies = config->lpDependencies != nullptr && *config->lpDependencies != L'\0';
}

void read_description(SC_HANDLE handle, Service& service) {
    const std::vector<BYTE> record = query_record([handle](BYTE* to, DWORD size, DWORD* needed) {
        return QueryServiceConfig2W(handle, SERVICE_CONFIG_DESCRIPTION, to, size, needed);
    });
    if (!record.empty()) {
        const auto* text = reinterpret_cast<const SERVICE_DESCRIPTIONW*>(record.data());
        service.description = text_or_empty(text->lpDescription);
    }
}

void read_failure_actions(SC_HANDLE handle, Service& service) {
    const std::vector<BYTE> record = query_record([handle](BYTE* to, DWORD size, DWORD* needed) {
        return QueryServiceConfig2W(handle, SERVICE_CONFIG_FAILURE_ACTIONS, to, size, needed);
    });
    if (record.empty()) {
        return;
    }
    const auto* failure = reinterpret_cast<const SERVICE_FAILURE_ACTIONSW*>(record.data());
    service.reset_period_seconds = failure->dwResetPeriod;
    for (DWORD i = 0; failure->lpsaActions != nullptr && i < failure->cActions; ++i) {
        service.actions.push_back({action_text(failure->lpsaActions[i].Type), failure->lpsaActions[i].Delay});
    }
    service.has_failure_actions = !service.actions.empty();
}

} // namespace

std::optional<Service> read_service(const wchar_t* name) {
    SC_HANDLE manager = OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT);
    if (manager == nullptr) {
        return std::nullopt;
    }
    SC_HANDLE handle = OpenServiceW(manager, name, SERVICE_QUERY_CONFIG | SERVICE_QUERY_STATUS);
    CloseServiceHandle(manager);
    if (handle == nullptr) {
        return std::nullopt;
    }
    Service service;
    service.name = name;
    read_config(handle, service);
    read_description(handle, service);
    read_failure_actions(handle, service);
    SERVICE_STATUS status = {};
    if (QueryServiceStatus(handle, &status) != FALSE) {
        service.state = state_text(status.dwCurrentState);
    }
    CloseServiceHandle(handle);
    return service;
}
