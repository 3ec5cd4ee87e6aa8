#pragma once

#include <new>
#include <unknwn.h>
#include <windows.h>

#include "common/com_ptr.h"

/// A COM object with one handler interface of WebView2 that passes its call on to a plain function, together
/// with the window it was made for. It lives as long as its references; the first belongs to its maker.
template<typename Interface, typename First, typename Second>
class EventHandler final : public Interface {
  public:
    using Callback = HRESULT (*)(HWND window, First first, Second second);

    EventHandler(const IID& id, HWND window, Callback callback)
        : id_(id), window_(window), callback_(callback) {}

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
            delete this;
        }
        return static_cast<ULONG>(left);
    }

    // An exception must not reach the runtime, which might swallow it: noexcept ends the process instead.
    HRESULT STDMETHODCALLTYPE Invoke(First first, Second second) noexcept override {
        return callback_(window_, first, second);
    }

  private:
    const IID& id_;
    HWND window_;
    Callback callback_;
    LONG references_ = 1;
};

/// Makes a handler for the interface with this id; the types follow from the function. Null when there is no
/// memory. The id must outlive the handler.
template<typename Interface, typename First, typename Second>
ComPtr<Interface> make_handler(const IID& id, HWND window,
                               HRESULT (*callback)(HWND window, First first, Second second)) {
    ComPtr<Interface> handler;
    handler.reset(new (std::nothrow) EventHandler<Interface, First, Second>(id, window, callback));
    return handler;
}
