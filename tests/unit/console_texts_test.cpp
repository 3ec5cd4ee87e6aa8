#include <doctest/doctest.h>

#include "console/uninstall_entry.h"
#include "console/update_task.h"

TEST_CASE("the weekly update task is made with the quoted updater as its command") {
    CHECK(create_task_command_line(L"C:\\Program Files\\Brackenfold\\FWC\\updater.exe") ==
          L"/C schtasks /Create /F /TN \"Brackenfold\\FWC Updater\" /TR \"\\\"C:\\Program "
          L"Files\\Brackenfold\\FWC\\updater.exe\\\"\" /SC WEEKLY /D SUN /ST 03:00 /RL HIGHEST /RU SYSTEM");
}

TEST_CASE("the weekly update task is removed by its name") {
    CHECK(delete_task_command_line() == L"/C schtasks /Delete /F /TN \"Brackenfold\\FWC Updater\"");
}

TEST_CASE("the install date has eight digits") {
    SYSTEMTIME date = {};
    date.wYear = 2025;
    date.wMonth = 3;
    date.wDay = 5;
    CHECK(install_date_text(date) == L"20250305");
    date.wYear = 2031;
    date.wMonth = 12;
    date.wDay = 31;
    CHECK(install_date_text(date) == L"20311231");
}
