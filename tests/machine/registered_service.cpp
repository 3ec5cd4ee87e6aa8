#include "registered_service.h"

#include <doctest/doctest.h>
#include <optional>

#include "linkward/service.h"
#include "read_service.h"
#include "test_files.h"

namespace {

const std::wstring install_dir = L"C:\\Program Files\\Brackenfold\\Veyra Linkward";

} // namespace

void deploy_program(const std::string& behaviour) {
    copy_file(sample_products() + L"\\VeyraLinkward.exe", service_program);
    if (!behaviour.empty()) {
        write_file(install_dir + L"\\VeyraLinkward.behaviour", behaviour + "\n");
    }
}

Registration register_service() {
    RecordedReports reports;
    const bool result = register_linkward_service(reports.progress);
    return {result, reports.all};
}

OwnedService open_service(DWORD access) {
    const OwnedService manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT));
    REQUIRE(static_cast<bool>(manager));
    return OwnedService(OpenServiceW(manager.get(), service_name, access));
}

std::wstring state_of_service() {
    const std::optional<Service> service = read_service(service_name);
    return service ? service->state : L"absent";
}
