#include <doctest/doctest.h>
#include <optional>
#include <string>
#include <vector>

#include <windows.h>

#include "common/installation_medium.h"
#include "file_error_text.h"
#include "intercepted_call.h"
#include "linkward/install.h"
#include "read_service.h"
#include "recorded_pauses.h"
#include "recorded_reports.h"
#include "refused_calls.h"
#include "stopped_service.h"
#include "test_files.h"
#include "test_registry.h"

namespace {

const std::wstring install_dir = L"C:\\Program Files\\Brackenfold\\Veyra Linkward";
const std::wstring data_dir = L"C:\\ProgramData\\Brackenfold\\Veyra Linkward";
const std::wstring host_key = L"SOFTWARE\\Vivaldi\\NativeMessagingHosts\\com.veyra.linkward";
const std::wstring uninstall_key = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\VeyraLinkward";

const Report bloom_report = {"Deployed bloom filter to ProgramData", true};
const Report started = {"Service installed and started", true};
const Report hosts_registered = {"Native messaging hosts registered", true};
const Report listed = {"Registered in Add/Remove Programs", true};

struct Installation {
    bool result = false;
    Reports reports;
};

Installation install(const std::wstring& source) {
    g_source_dir = source;
    RecordedReports reports;
    const bool result = install_linkward(reports.progress);
    return {result, reports.all};
}

std::wstring state_of_service() {
    const std::optional<Service> service = read_service(L"VeyraLinkward");
    return service ? service->state : L"absent";
}

void check_registered() {
    CHECK(values_of(host_key).size() == 1);
    CHECK(values_of(uninstall_key).size() == 7);
}

} // namespace

TEST_CASE("an installation reports its steps in order and leaves a running product") {
    RecordedPauses pauses;
    const Installation installation = install(sample_products());
    CHECK(installation.result);
    CHECK(installation.reports ==
          Reports{bloom_report, bloom_report, {"Deployed 4 files", true}, started, hosts_registered, listed});
    CHECK(pauses.all.empty());
    CHECK(state_of_service() == L"running");
    CHECK(is_there(install_dir + L"\\com.veyra.linkward.chromium.json"));
    CHECK(is_there(install_dir + L"\\com.veyra.linkward.firefox.json"));
    check_registered();
}

TEST_CASE("over a running service everything but its program is replaced") {
    const std::wstring source = copy_of_sample_products();
    REQUIRE(install(source).result);
    for (const wchar_t* name :
         {L"VeyraLinkward.exe", L"VeyraLinkwardCommunicator.exe", L"malware-sites.vybf"}) {
        write_file(source + L"\\" + name, "new");
    }
    const std::string service_program = bytes_of(install_dir + L"\\VeyraLinkward.exe");
    RecordedPauses pauses;
    pauses.during = [&] { wait_for_stopped_service(pauses.all.back()); };
    const Installation again = install(source);
    CHECK(again.result);
    const Report warning = {
        "Warning: failed to copy VeyraLinkward.exe (" +
            file_error_text("copy_file", ERROR_SHARING_VIOLATION,
                            {source + L"\\VeyraLinkward.exe", install_dir + L"\\VeyraLinkward.exe"}) +
            ")",
        false};
    CHECK(again.reports == Reports{warning,
                                   bloom_report,
                                   bloom_report,
                                   {"Deployed 3 files", true},
                                   started,
                                   hosts_registered,
                                   listed});
    CHECK(without_polls(pauses.all) == std::vector<unsigned long>{1000});
    const bool is_kept = bytes_of(install_dir + L"\\VeyraLinkward.exe") == service_program;
    CHECK(is_kept);
    CHECK(bytes_of(install_dir + L"\\VeyraLinkwardCommunicator.exe") == "new");
    CHECK(bytes_of(data_dir + L"\\malware-sites.vybf") == "new");
    CHECK(state_of_service() == L"running");
}

TEST_CASE("missing product files are not missed but for a service that cannot start") {
    write_file(L"C:\\Media\\readme.txt", "x");
    const Installation installation = install(L"C:\\Media");
    CHECK(installation.result);
    CHECK(installation.reports == Reports{{"Deployed 1 files", true},
                                          {"Service installed but start failed (error 2)", true},
                                          hosts_registered,
                                          listed});
    check_registered();
}

TEST_CASE("a missing source fails the installation and every later step still runs") {
    const Installation installation = install(L"C:\\None");
    CHECK_FALSE(installation.result);
    CHECK(installation.reports ==
          Reports{{"File copy failed: " +
                       file_error_text("equivalent", ERROR_FILE_NOT_FOUND, {L"C:\\None", install_dir}),
                   false},
                  {"Service installed but start failed (error 2)", true},
                  hosts_registered,
                  listed});
    CHECK(paths_below(install_dir) ==
          std::vector<std::wstring>{L"com.veyra.linkward.chromium.json", L"com.veyra.linkward.firefox.json"});
    CHECK(state_of_service() == L"stopped");
    check_registered();
}

TEST_CASE("without the service control manager the installation fails and the other steps are done") {
    const InterceptedCall refusal("OpenSCManagerW", no_service_manager);
    const Installation installation = install(sample_products());
    CHECK_FALSE(installation.result);
    CHECK(installation.reports == Reports{bloom_report,
                                          bloom_report,
                                          {"Deployed 4 files", true},
                                          {"Cannot open SCM (error 5)", false},
                                          hosts_registered,
                                          listed});
    check_registered();
}

TEST_CASE("an installation from the install folder itself only renews what is registered") {
    REQUIRE(install(sample_products()).result);
    copy_file(sample_products() + L"\\malware-sites.vybf", install_dir + L"\\third.vybf");
    REQUIRE(DeleteFileW((install_dir + L"\\com.veyra.linkward.firefox.json").c_str()) != FALSE);
    RecordedPauses pauses;
    pauses.during = [&] { wait_for_stopped_service(pauses.all.back()); };
    const Installation again = install(install_dir + L"\\");
    CHECK(again.result);
    CHECK(again.reports ==
          Reports{
              {"Files already in install directory", true}, bloom_report, started, hosts_registered, listed});
    CHECK(is_there(data_dir + L"\\third.vybf"));
    CHECK(is_there(install_dir + L"\\com.veyra.linkward.firefox.json"));
    CHECK(state_of_service() == L"running");
}
