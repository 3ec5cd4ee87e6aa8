#pragma once

#include <windows.h>
#include <unknwn.h>

/// The IUnknown part of an object that implements one interface besides: its references, which begin with the
/// maker's, and the questions for its interfaces. `Derived` is the class that is destroyed with the last
/// reference; the published interfaces have no virtual destructor.
template<typename Derived, typename Interface>
class ComObject : public Interface {
  public:
    /// The interface's id, which must outlive the object.
    explicit ComObject(const IID& id) : id_(id) {}
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept override {
        if (object == nullptr) {
            return E_POINTER;
        }
        if (!IsEqualIID(id, id_) && !IsEqualIID(id, IID_IUnknown)) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        *object = static_cast<Interface*>(this);
        AddRef();
        return S_OK;
    }

    ULONG STDMETHODCALLTYPE AddRef() noexcept override {
        return static_cast<ULONG>(InterlockedIncrement(&references_));
    }

    ULONG STDMETHODCALLTYPE Release() noexcept override {
        const LONG left = InterlockedDecrement(&references_);
        if (left == 0) {
            delete static_cast<Derived*>(this);
        }
        return static_cast<ULONG>(left);
    }

  protected:
    ~ComObject() = default;

  private:
    const IID& id_;
    LONG references_ = 1;
};
