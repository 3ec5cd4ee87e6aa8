#include "deployed.h"

#include <doctest/doctest.h>

#include "linkward/deployment.h"
#include "started_program.h"
#include "test_files.h"

Deployment deploy(const std::wstring& from) {
    RecordedReports reports;
    const bool result = deploy_linkward_files(from, reports.progress);
    return {result, reports.all};
}

void check_installer_copy() {
    CHECK(have_same_bytes(install_dir + L"\\VeyraLinkwardInstaller.exe", test_program()));
}
