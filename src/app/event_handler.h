#pragma once

#include <new>

#include <windows.h>

#include "common/com_object.h"
#include "common/com_ptr.h"

/// A COM object with one handler interface of WebView2 that passes its call on to a plain function, together
/// with the window it was made for.
template<typename Interface, typename First, typename Second>
class EventHandler final : public ComObject<EventHandler<Interface, First, Second>, Interface> {
  public:
    using Callback = HRESULT (*)(HWND window, First first, Second second);

    EventHandler(const IID& id, HWND window, Callback callback)
        : ComObject<EventHandler, Interface>(id), window_(window), callback_(callback) {}

    // An exception must not reach the runtime, which might swallow it: noexcept ends the process instead.
    HRESULT STDMETHODCALLTYPE Invoke(First first, Second second) noexcept override {
        return callback_(window_, first, second);
    }

  private:
    HWND window_;
    Callback callback_;
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
