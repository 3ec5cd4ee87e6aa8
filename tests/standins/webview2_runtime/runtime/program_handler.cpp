#include "program_handler.h"

namespace {

/// The pointer with a reference; null when it is not given.
void* ask(IUnknown* handler, REFIID iid) {
    void* object = nullptr;
    return SUCCEEDED(handler->QueryInterface(iid, &object)) ? object : nullptr;
}

} // namespace

void* ask_handler(IUnknown* handler, REFIID iid, const wchar_t* name) {
    if (handler == nullptr) {
        return nullptr;
    }
    if (void* const unknown = ask(handler, IID_IUnknown)) {
        static_cast<IUnknown*>(unknown)->Release();
    } else {
        record_trouble(std::wstring(name) + L" does not answer IUnknown");
    }
    void* const asked = ask(handler, iid);
    if (asked == nullptr) {
        record_trouble(std::wstring(name) + L" does not answer its own id");
    }
    return asked;
}
