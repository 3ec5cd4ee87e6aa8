#pragma once

#include <atomic>
#include <string>

#include <unknwn.h>

#include "journal.h"

/// Objects handed to the program that have not been released yet, by name, for the report of leaks.
void count_object(const wchar_t* name, int change);

/// Names every object that is still alive and how often; empty when there is none.
std::wstring living_objects();

/// Reference counting for an object that the program holds. `Derived` names itself in `object_name` and
/// says which ids it answers in `answers(REFIID)`, next to IUnknown.
template<typename Interface, typename Derived>
class ComObject : public Interface {
  public:
    ComObject() { count_object(Derived::object_name, 1); }
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (object == nullptr) {
            return E_POINTER;
        }
        *object = nullptr;
        if (iid != IID_IUnknown && !Derived::answers(iid)) {
            return E_NOINTERFACE;
        }
        // Each of these objects has one chain of interfaces and so one pointer for all of them.
        *object = static_cast<Interface*>(this);
        AddRef();
        return S_OK;
    }

    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }

    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) {
            delete static_cast<Derived*>(this);
        }
        return left;
    }

  protected:
    ~ComObject() { count_object(Derived::object_name, -1); }

  private:
    std::atomic<ULONG> references_ = 1;
};
