#pragma once

#include <string>
#include <utility>

#include <unknwn.h>

#include "journal.h"

/// Asks a handler of the program for IUnknown and for `iid`; what it does not answer is recorded. Nothing
/// else is asked: the handler that Microsoft's loader puts before the program's does not survive every
/// question. Returns the pointer with a reference, null when the handler does not know its own id.
void* ask_handler(IUnknown* handler, REFIID iid, const wchar_t* name);

/// A reference to one of the program's handlers; letting go of it is recorded with the number of
/// references that are left.
template<typename Interface>
class ProgramHandler {
  public:
    ProgramHandler() = default;
    ProgramHandler(Interface* given, REFIID iid, const wchar_t* name)
        : handler_(static_cast<Interface*>(ask_handler(given, iid, name))), name_(name) {}
    ProgramHandler(ProgramHandler&& other) noexcept
        : handler_(std::exchange(other.handler_, nullptr)), name_(other.name_) {}
    ProgramHandler& operator=(ProgramHandler&& other) noexcept {
        std::swap(handler_, other.handler_);
        std::swap(name_, other.name_);
        return *this;
    }
    ProgramHandler(const ProgramHandler&) = delete;
    ProgramHandler& operator=(const ProgramHandler&) = delete;
    ~ProgramHandler() { release(); }

    explicit operator bool() const { return handler_ != nullptr; }

    /// Calls the handler; what it answers is recorded. A handler may release itself or us meanwhile.
    template<typename... Arguments>
    void invoke(Arguments... arguments) const {
        Interface* const handler = handler_;
        const wchar_t* const name = name_;
        handler->AddRef();
        record_handled(name, handler->Invoke(arguments...));
        handler->Release();
    }

    void release() {
        if (handler_ != nullptr) {
            const ULONG left = std::exchange(handler_, nullptr)->Release();
            record_call(std::wstring(name_) + L"::Release", std::to_wstring(left) + L" left");
        }
    }

  private:
    Interface* handler_ = nullptr;
    const wchar_t* name_ = L"";
};
