// Reads tasks back from the Task Scheduler of the machine, which Wine has a modest one of.
#include "system_task.h"

#include <doctest/doctest.h>
#include <string>

#include <windows.h>
#include <oleauto.h>
#include <taskschd.h>

namespace {

// COM for the thread, for the length of a case.
struct ComScope {
    ComScope() { REQUIRE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))); }
    ComScope(const ComScope&) = delete;
    ComScope& operator=(const ComScope&) = delete;
    ~ComScope() { CoUninitialize(); }
};

std::wstring task_with(const std::wstring& setting) {
    return L"<?xml version=\"1.0\" encoding=\"UTF-16\"?>"
           L"<Task version=\"1.2\" xmlns=\"http://schemas.microsoft.com/windows/2004/02/mit/task\">"
           L"<Settings>" +
           setting + L"</Settings><Actions><Exec><Command>C:\\a.exe</Command></Exec></Actions></Task>";
}

// Makes a task as a program does that knows Task Scheduler.
void register_task(const wchar_t* path, const std::wstring& xml) {
    CLSID scheduler = {};
    REQUIRE(SUCCEEDED(CLSIDFromString(L"{0F87369F-A4E5-4CFC-BD3E-73E6154572DD}", &scheduler)));
    IID service_id = {};
    REQUIRE(SUCCEEDED(IIDFromString(L"{2FABA4C7-4DA9-4013-9697-20CC3FD40F85}", &service_id)));
    void* object = nullptr;
    REQUIRE(SUCCEEDED(CoCreateInstance(scheduler, nullptr, CLSCTX_INPROC_SERVER, service_id, &object)));
    auto* const service = static_cast<ITaskService*>(object);
    VARIANT none;
    VariantInit(&none);
    REQUIRE(SUCCEEDED(service->Connect(none, none, none, none)));
    ITaskFolder* root = nullptr;
    BSTR root_path = SysAllocString(L"\\");
    REQUIRE(SUCCEEDED(service->GetFolder(root_path, &root)));
    BSTR task_path = SysAllocString(path);
    BSTR text = SysAllocString(xml.c_str());
    IRegisteredTask* task = nullptr;
    REQUIRE(SUCCEEDED(root->RegisterTask(task_path, text, TASK_CREATE_OR_UPDATE, none, none, TASK_LOGON_NONE,
                                         none, &task)));
    task->Release();
    root->Release();
    service->Release();
    for (BSTR used : {root_path, task_path, text}) {
        SysFreeString(used);
    }
}

} // namespace

TEST_CASE("a task that nobody has made is nothing, with and without its folder") {
    const ComScope com;
    CHECK_FALSE(read_system_task(L"Nobody\\Job").has_value());
    CHECK_FALSE(read_system_task(L"Job").has_value());
}

// Of a task's own words Wine keeps the settings alone; the rest is shown by the unit test of the XML.
TEST_CASE("a task of a program is read back from Task Scheduler, and not another") {
    const ComScope com;
    register_task(L"\\Maker\\Job", task_with(L"<Enabled>true</Enabled>"));
    register_task(L"\\Maker\\Job that is off", task_with(L"<Enabled>false</Enabled>"));
    const std::optional<ScheduledTask> task = read_system_task(L"Maker\\Job");
    const std::optional<ScheduledTask> task_that_is_off = read_system_task(L"Maker\\Job that is off");
    REQUIRE(task.has_value());
    REQUIRE(task_that_is_off.has_value());
    CHECK(task->name == L"Maker\\Job");
    CHECK(task->schedule == L"");
    CHECK(task->run_level == L"LIMITED");
    CHECK(task->recorded == L"");
    CHECK(task_that_is_off->schedule == L"switched off: ");
    CHECK_FALSE(read_system_task(L"Maker\\Other job").has_value());
}

TEST_CASE("a Task Scheduler that does not answer is told from one that has no such task") {
    // Without COM on the thread nobody can be asked.
    const std::optional<ScheduledTask> task = read_system_task(L"Maker\\Job");
    REQUIRE(task.has_value());
    CHECK(task->runs == L"Task Scheduler does not answer: 0x800401f0");
}
