#include <doctest/doctest.h>
#include <string>

#include <windows.h>

#include "linkward/service.h"
#include "recorded_pauses.h"
#include "recorded_reports.h"
#include "registered_service.h"
#include "stopped_service.h"

TEST_CASE("a running service is removed after two seconds and a missing one at once") {
    RecordedPauses pauses;
    RecordedReports reports;
    remove_linkward_service(reports.progress);
    CHECK(reports.all == Reports{{"Service removed", true}});
    CHECK(pauses.all.empty());

    deploy_program();
    REQUIRE(register_service().result);
    std::wstring state_during_pause;
    pauses.during = [&] {
        wait_for_stopped_service(pauses.all.back());
        state_during_pause = state_of_service();
    };
    remove_linkward_service(reports.progress);
    CHECK(reports.all == Reports{{"Service removed", true}, {"Service removed", true}});
    CHECK(pauses.all == Pauses{2000});
    CHECK(state_during_pause == L"stopped");
    CHECK(state_of_service() == L"absent");
}

TEST_CASE("a service that ignores the request to stop is deleted all the same") {
    deploy_program("ignore_stop_ms 60000");
    REQUIRE(register_service().result);
    CHECK(state_of_service() == L"running");
    RecordedPauses pauses;
    RecordedReports reports;
    remove_linkward_service(reports.progress);
    CHECK(reports.all == Reports{{"Service removed", true}});
    CHECK(pauses.all == Pauses{2000});
    const OwnedService service = open_service(SERVICE_ALL_ACCESS);
    const bool is_gone_or_marked = !service || (DeleteService(service.get()) == FALSE &&
                                                GetLastError() == ERROR_SERVICE_MARKED_FOR_DELETE);
    CHECK(is_gone_or_marked);
}
