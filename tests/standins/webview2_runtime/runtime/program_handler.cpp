#include "program_handler.h"

namespace {

// An id that no interface has.
constexpr IID unknown_iid = {0x7f1e5a90, 0x2c4b, 0x4d1d, {0x9a, 0x55, 0x0c, 0x3e, 0x8d, 0x21, 0x6b, 0x74}};

void report(const wchar_t* name, const wchar_t* fault) {
    record_trouble(std::wstring(name) + L" " + fault);
}

void check_manners(IUnknown* handler, const wchar_t* name) {
    void* object = nullptr;
    if (FAILED(handler->QueryInterface(IID_IUnknown, &object)) || object == nullptr) {
        report(name, L"does not answer IUnknown");
    } else {
        static_cast<IUnknown*>(object)->Release();
    }
    object = handler;
    if (handler->QueryInterface(unknown_iid, &object) != E_NOINTERFACE) {
        report(name, L"answers an id that it cannot know");
    } else if (object != nullptr) {
        report(name, L"does not clear the pointer for an id that it does not know");
    }
    if (handler->QueryInterface(IID_IUnknown, nullptr) != E_POINTER) {
        report(name, L"does not refuse a null pointer with E_POINTER");
    }
}

} // namespace

void* ask_handler(IUnknown* handler, REFIID iid, const wchar_t* name) {
    if (handler == nullptr) {
        return nullptr;
    }
    check_manners(handler, name);
    void* asked = nullptr;
    if (FAILED(handler->QueryInterface(iid, &asked)) || asked == nullptr) {
        report(name, L"does not answer its own id");
        return nullptr;
    }
    return asked;
}
