#include "system_task.h"

#include <cstdio>
#include <utility>

#include <windows.h>
#include <oleauto.h>
#include <taskschd.h>

#include "task_xml.h"

namespace {

// Written out, because the compilers do not agree on a library that has them.
constexpr GUID scheduler_class = {
    0x0f87369f, 0xa4e5, 0x4cfc, {0xbd, 0x3e, 0x73, 0xe6, 0x15, 0x45, 0x72, 0xdd}};
constexpr GUID service_interface = {
    0x2faba4c7, 0x4da9, 0x4013, {0x96, 0x97, 0x20, 0xcc, 0x3f, 0xd4, 0x0f, 0x85}};

// Releases what it holds at the end of its scope.
template<typename Object>
struct Held {
    Object* object = nullptr;

    Held() = default;
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    ~Held() {
        if (object != nullptr) {
            object->Release();
        }
    }
};

struct OwnedBstr {
    BSTR text = nullptr;

    OwnedBstr() = default;
    explicit OwnedBstr(const std::wstring& from) : text(SysAllocString(from.c_str())) {}
    OwnedBstr(const OwnedBstr&) = delete;
    OwnedBstr& operator=(const OwnedBstr&) = delete;
    ~OwnedBstr() { SysFreeString(text); }
};

HRESULT connect(Held<ITaskService>& service) {
    void* object = nullptr;
    HRESULT result =
        CoCreateInstance(scheduler_class, nullptr, CLSCTX_INPROC_SERVER, service_interface, &object);
    if (SUCCEEDED(result)) {
        service.object = static_cast<ITaskService*>(object);
        // This machine, as who we are.
        VARIANT nobody;
        VariantInit(&nobody);
        result = service.object->Connect(nobody, nobody, nobody, nobody);
    }
    return result;
}

HRESULT read_xml(const std::wstring& name, std::wstring& xml) {
    Held<ITaskService> service;
    Held<ITaskFolder> root;
    Held<IRegisteredTask> task;
    HRESULT result = connect(service);
    if (SUCCEEDED(result)) {
        result = service.object->GetFolder(OwnedBstr(L"\\").text, &root.object);
    }
    if (SUCCEEDED(result)) {
        result = root.object->GetTask(OwnedBstr(L"\\" + name).text, &task.object);
    }
    if (SUCCEEDED(result)) {
        OwnedBstr text;
        result = task.object->get_Xml(&text.text);
        if (SUCCEEDED(result)) {
            xml.assign(text.text, SysStringLen(text.text));
        }
    }
    return result;
}

} // namespace

std::optional<ScheduledTask> read_system_task(const std::wstring& name) {
    std::wstring xml;
    const HRESULT result = read_xml(name, xml);
    if (SUCCEEDED(result)) {
        return task_from_xml(name, xml);
    }
    if (result == HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND) ||
        result == HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND)) {
        return std::nullopt;
    }
    ScheduledTask unknown;
    unknown.name = name;
    wchar_t code[16] = {};
    std::swprintf(code, 16, L"0x%08lx", static_cast<unsigned long>(result));
    unknown.runs = L"Task Scheduler does not answer: " + std::wstring(code);
    return unknown;
}
