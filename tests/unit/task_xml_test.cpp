#include "task_xml.h"

#include <doctest/doctest.h>
#include <string>

namespace {

/// As Task Scheduler of Windows 10 writes down what `schtasks /Create /SC WEEKLY /D SUN /ST 03:00` made.
const std::wstring weekly =
    L"<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n"
    L"<Task version=\"1.2\" xmlns=\"http://schemas.microsoft.com/windows/2004/02/mit/task\">\r\n"
    L"  <RegistrationInfo>\r\n    <Date>2026-11-22T01:02:03</Date>\r\n    <Author>HERE\\me</Author>\r\n"
    L"    <URI>\\Maker\\Job</URI>\r\n  </RegistrationInfo>\r\n"
    L"  <Principals>\r\n    <Principal id=\"Author\">\r\n      <UserId>S-1-5-18</UserId>\r\n"
    L"      <RunLevel>HighestAvailable</RunLevel>\r\n    </Principal>\r\n  </Principals>\r\n"
    L"  <Settings>\r\n    <IdleSettings>\r\n      <StopOnIdleEnd>true</StopOnIdleEnd>\r\n"
    L"    </IdleSettings>\r\n  </Settings>\r\n"
    L"  <Triggers>\r\n    <CalendarTrigger>\r\n      <StartBoundary>2026-11-22T03:00:00</StartBoundary>\r\n"
    L"      <ScheduleByWeek>\r\n        <WeeksInterval>1</WeeksInterval>\r\n        <DaysOfWeek>\r\n"
    L"          <Sunday />\r\n        </DaysOfWeek>\r\n      </ScheduleByWeek>\r\n"
    L"    </CalendarTrigger>\r\n  </Triggers>\r\n"
    L"  <Actions Context=\"Author\">\r\n    <Exec>\r\n      <Command>\"C:\\a b\\c.exe\"</Command>\r\n"
    L"    </Exec>\r\n  </Actions>\r\n</Task>";

std::wstring with(const std::wstring& from, const std::wstring& to) {
    std::wstring xml = weekly;
    const size_t at = xml.find(from);
    REQUIRE(at != std::wstring::npos);
    return xml.replace(at, from.size(), to);
}

std::wstring schedule_of(const std::wstring& xml) {
    return task_from_xml(L"Maker\\Job", xml).schedule;
}

} // namespace

TEST_CASE("a weekly task is told in the words of the command that made it") {
    const ScheduledTask task = task_from_xml(L"Maker\\Job", weekly);
    CHECK(task.name == L"Maker\\Job");
    CHECK(task.runs == L"\"C:\\a b\\c.exe\"");
    CHECK(task.schedule == L"WEEKLY SUN 03:00");
    CHECK(task.account == L"SYSTEM");
    CHECK(task.run_level == L"HIGHEST");
    CHECK(task.recorded == L"");
}

TEST_CASE("quotes around a task's program do not matter, arguments and escapes do") {
    const std::wstring command = L"<Command>\"C:\\a b\\c.exe\"</Command>";
    const auto runs = [&](const std::wstring& other) {
        return task_from_xml(L"Job", with(command, other)).runs;
    };
    CHECK(runs(L"<Command>C:\\a b\\c.exe</Command>") == L"\"C:\\a b\\c.exe\"");
    CHECK(runs(command + L"<Arguments>-x</Arguments>") == L"\"C:\\a b\\c.exe\" -x");
    CHECK(runs(L"<Command>&quot;&lt;&amp;lt;&gt;&apos;&quot;</Command>") == L"\"<&lt;>'\"");
    CHECK(runs(L"<Command/>") == L"\"\"");
}

TEST_CASE("a schedule tells days and time, and other schedules are not taken for it") {
    CHECK(schedule_of(with(L"<Sunday />", L"<Friday /><Monday/>")) == L"WEEKLY MON,FRI 03:00");
    CHECK(schedule_of(with(L"<WeeksInterval>1</WeeksInterval>", L"")) == L"WEEKLY SUN 03:00");
    CHECK(schedule_of(with(L"T03:00:00", L"T15:30:00")) == L"WEEKLY SUN 15:30");
    for (const auto& [from, to] :
         {std::pair{L"<WeeksInterval>1<", L"<WeeksInterval>2<"}, std::pair{L"T03:00:00", L"T03:00:30"},
          std::pair{L"T03:00:00", L"T03:00:00Z"},
          std::pair{L"</CalendarTrigger>", L"</CalendarTrigger><BootTrigger></BootTrigger>"},
          std::pair{L"<ScheduleByWeek>", L"<ScheduleByWeeks>"}}) {
        const std::wstring schedule = schedule_of(with(from, to));
        CAPTURE(std::string(schedule.begin(), schedule.end()));
        CHECK(schedule.find(L"<CalendarTrigger>") != std::wstring::npos);
    }
    CHECK(schedule_of(with(L"<StartBoundary>", L"<Enabled>false</Enabled><StartBoundary>"))
              .starts_with(L"switched off: "));
    CHECK(schedule_of(with(L"<IdleSettings>", L"<Enabled>false</Enabled><IdleSettings>"))
              .starts_with(L"switched off: "));
    CHECK(schedule_of(L"no XML") == L"");
}

TEST_CASE("other accounts and run levels of a task are told as they stand") {
    const ScheduledTask other = task_from_xml(L"Job", with(L"S-1-5-18", L"HERE\\me"));
    CHECK(other.account == L"HERE\\me");
    CHECK(task_from_xml(L"Job", with(L"S-1-5-18", L"NT AUTHORITY\\SYSTEM")).account == L"SYSTEM");
    CHECK(task_from_xml(L"Job", with(L"<RunLevel>HighestAvailable</RunLevel>", L"")).run_level == L"LIMITED");
    CHECK(task_from_xml(L"Job", with(L"HighestAvailable", L"LeastPrivilege")).run_level == L"LeastPrivilege");
}
