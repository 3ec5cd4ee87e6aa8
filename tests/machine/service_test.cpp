#include "linkward/service.h"

#include <doctest/doctest.h>
#include <optional>
#include <string>
#include <vector>

#include <windows.h>

#include "before_each_case.h"
#include "intercepted_call.h"
#include "read_service.h"
#include "recorded_pauses.h"
#include "recorded_reports.h"
#include "registered_service.h"
#include "stopped_service.h"

namespace {

DWORD process_of_service() {
    const OwnedService service = open_service(SERVICE_QUERY_STATUS);
    REQUIRE(static_cast<bool>(service));
    SERVICE_STATUS_PROCESS status = {};
    DWORD size = 0;
    REQUIRE(QueryServiceStatusEx(service.get(), SC_STATUS_PROCESS_INFO, reinterpret_cast<BYTE*>(&status),
                                 sizeof status, &size) != FALSE);
    return status.dwProcessId;
}

// Written by the stand-ins below, on the test's thread.
DWORD g_manager_access = 0;
DWORD g_error = 0;
std::vector<DWORD> g_config_levels;
const BeforeEachCase start_anew([] {
    g_manager_access = 0;
    g_config_levels.clear();
});

SC_HANDLE WINAPI manager_refused(LPCWSTR machine, LPCWSTR database, DWORD access) {
    CHECK(machine == nullptr);
    CHECK(database == nullptr);
    g_manager_access = access;
    SetLastError(g_error);
    return nullptr;
}

SC_HANDLE WINAPI manager_noted(LPCWSTR machine, LPCWSTR database, DWORD access) {
    g_manager_access = access;
    return real_function<decltype(OpenSCManagerW)>("OpenSCManagerW")(machine, database, access);
}

BOOL WINAPI start_refused(SC_HANDLE /*service*/, DWORD count, LPCWSTR* arguments) {
    CHECK(count == 0);
    CHECK(arguments == nullptr);
    SetLastError(g_error);
    return FALSE;
}

BOOL WINAPI config_checked(SC_HANDLE /*service*/, DWORD level, LPVOID information) {
    g_config_levels.push_back(level);
    if (level == SERVICE_CONFIG_FAILURE_ACTIONS) {
        const auto* const failure = static_cast<const SERVICE_FAILURE_ACTIONSW*>(information);
        CHECK(failure->dwResetPeriod == 86400);
        CHECK(failure->lpRebootMsg == nullptr);
        CHECK(failure->lpCommand == nullptr);
        REQUIRE(failure->cActions == 3);
        const std::vector<DWORD> delays_ms = {3000, 5000, 10000};
        for (size_t i = 0; i < 3; ++i) {
            CHECK(failure->lpsaActions[i].Type == SC_ACTION_RESTART);
            CHECK(failure->lpsaActions[i].Delay == delays_ms[i]);
        }
    }
    // Refused, which changes nothing else.
    SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
}

SC_HANDLE WINAPI creation_checked(SC_HANDLE manager, LPCWSTR name, LPCWSTR display_name, DWORD access,
                                  DWORD type, DWORD start, DWORD error_control, LPCWSTR path, LPCWSTR group,
                                  LPDWORD tag, LPCWSTR dependencies, LPCWSTR account, LPCWSTR password) {
    CHECK(access == SERVICE_ALL_ACCESS);
    CHECK(group == nullptr);
    CHECK(tag == nullptr);
    CHECK(dependencies == nullptr);
    CHECK(account == nullptr);
    CHECK(password == nullptr);
    return real_function<decltype(CreateServiceW)>("CreateServiceW")(manager, name, display_name, access,
                                                                     type, start, error_control, path, group,
                                                                     tag, dependencies, account, password);
}

} // namespace

TEST_CASE("a first service is created as it should be and runs without any pause") {
    deploy_program();
    RecordedPauses pauses;
    const Registration registration = register_service();
    CHECK(registration.result);
    CHECK(registration.reports == Reports{{"Service installed and started", true}});
    CHECK(pauses.all.empty());
    const std::optional<Service> service = read_service(service_name);
    REQUIRE(service.has_value());
    CHECK(service->display_name == L"Veyra Linkward");
    CHECK(service->program == L"C:\\Program Files\\Brackenfold\\Veyra Linkward\\VeyraLinkward.exe");
    CHECK(service->service_type == SERVICE_WIN32_OWN_PROCESS);
    CHECK(service->start_type == L"automatic");
    CHECK(service->error_control == SERVICE_ERROR_NORMAL);
    CHECK(service->account == L"LocalSystem");
    CHECK(service->description == L"Veyra Linkward - Real-time website threat classification");
    CHECK(service->load_order_group == L"");
    CHECK_FALSE(service->has_dependencies);
    CHECK(service->state == L"running");
}

// Fixed behaviour: the rights, levels and delays that Windows is asked for are prescribed; it need not show
// them.
TEST_CASE("restart policy and rights are asked for and a refused description is no failure") {
    deploy_program();
    const InterceptedCall manager("OpenSCManagerW", manager_noted);
    const InterceptedCall create("CreateServiceW", creation_checked);
    const InterceptedCall config("ChangeServiceConfig2W", config_checked);
    const Registration registration = register_service();
    CHECK(registration.result);
    CHECK(registration.reports == Reports{{"Service installed and started", true}});
    CHECK(g_manager_access == SC_MANAGER_CREATE_SERVICE);
    CHECK(g_config_levels == std::vector<DWORD>{SERVICE_CONFIG_DESCRIPTION, SERVICE_CONFIG_FAILURE_ACTIONS});
}

TEST_CASE("a running earlier service is stopped and deleted and created anew") {
    deploy_program();
    REQUIRE(register_service().result);
    const DWORD earlier_process = process_of_service();
    {
        const OwnedService earlier = open_service(SERVICE_ALL_ACCESS);
        REQUIRE(ChangeServiceConfigW(earlier.get(), SERVICE_NO_CHANGE, SERVICE_DISABLED, SERVICE_ERROR_SEVERE,
                                     L"C:\\old.exe", nullptr, nullptr, nullptr, nullptr, nullptr,
                                     L"Old name") != FALSE);
    }
    RecordedPauses pauses;
    std::wstring state_after_stop;
    pauses.during = [&] {
        wait_for_stopped_service(pauses.all.back());
        if (pauses.all.size() == 1) {
            state_after_stop = state_of_service();
        }
    };
    const Registration registration = register_service();
    CHECK(registration.result);
    CHECK(registration.reports == Reports{{"Service installed and started", true}});
    CHECK(without_polls(pauses.all) == Pauses{1000});
    CHECK(state_after_stop == L"stopped");
    const std::optional<Service> service = read_service(service_name);
    REQUIRE(service.has_value());
    CHECK(service->program == service_program);
    CHECK(service->display_name == L"Veyra Linkward");
    CHECK(service->start_type == L"automatic");
    CHECK(service->error_control == SERVICE_ERROR_NORMAL);
    CHECK(service->state == L"running");
    CHECK(process_of_service() != earlier_process);
}

TEST_CASE("a name that stays held after ten polls makes the creation fail") {
    deploy_program();
    REQUIRE(register_service().result);
    const OwnedService held = open_service(SERVICE_QUERY_STATUS);
    REQUIRE(static_cast<bool>(held));
    RecordedPauses pauses;
    const Registration registration = register_service();
    CHECK_FALSE(registration.result);
    CHECK(registration.reports ==
          Reports{{"CreateService failed (error 1072, path: "
                   "C:\\Program Files\\Brackenfold\\Veyra Linkward\\VeyraLinkward.exe)",
                   false}});
    CHECK(pauses.all == Pauses{1000, 500, 500, 500, 500, 500, 500, 500, 500, 500, 500});
}

TEST_CASE("polling ends as soon as the name is free") {
    // Without its program: a service that runs holds its own name until it has stopped.
    REQUIRE(register_service().result);
    OwnedService held = open_service(SERVICE_QUERY_STATUS);
    RecordedPauses pauses;
    pauses.during = [&] {
        if (pauses.all.size() == 4) {
            held.reset();
        }
    };
    const Registration registration = register_service();
    CHECK(registration.result);
    CHECK(pauses.all == Pauses{1000, 500, 500, 500});
    CHECK(registration.reports.size() == 1);
    CHECK(state_of_service() != L"absent");
}

TEST_CASE("a service that does not start counts as installed and its error is told") {
    const Registration without_program = register_service();
    CHECK(without_program.result);
    CHECK(without_program.reports == Reports{{"Service installed but start failed (error 2)", true}});
    CHECK(state_of_service() == L"stopped");

    RecordedPauses pauses;
    const InterceptedCall start("StartServiceW", start_refused);
    g_error = 4294967295;
    CHECK(register_service().reports ==
          Reports{{"Service installed but start failed (error 4294967295)", true}});
    g_error = ERROR_SERVICE_ALREADY_RUNNING;
    const Registration running = register_service();
    CHECK(running.result);
    CHECK(running.reports == Reports{{"Service installed (already running)", true}});
    // An earlier service that was not running is treated like one that was.
    CHECK(pauses.all == Pauses{1000, 1000});
}

TEST_CASE("a service whose program ends without an answer counts as installed") {
    deploy_program("exit_at_start");
    const Registration registration = register_service();
    CHECK(registration.result);
    CHECK(registration.reports == Reports{{"Service installed but start failed (error 1053)", true}});
    CHECK(state_of_service() == L"stopped");
}

TEST_CASE("without the service control manager nothing is created and the removal still reports") {
    const InterceptedCall manager("OpenSCManagerW", manager_refused);
    g_error = ERROR_ACCESS_DENIED;
    RecordedPauses pauses;
    const Registration registration = register_service();
    CHECK_FALSE(registration.result);
    CHECK(registration.reports == Reports{{"Cannot open SCM (error 5)", false}});
    CHECK(g_manager_access == SC_MANAGER_CREATE_SERVICE);

    RecordedReports reports;
    remove_linkward_service(reports.progress);
    CHECK(reports.all == Reports{{"Service removed", true}});
    CHECK(g_manager_access == SC_MANAGER_ALL_ACCESS);
    CHECK(pauses.all.empty());
}
