#include "app/event_handler.h"

#include <doctest/doctest.h>

#include "webview2/webview2.h"

namespace {

using Handler = ICoreWebView2WebMessageReceivedEventHandler;

HWND g_called_with = nullptr;

HRESULT note_call(HWND window, ICoreWebView2* sender, ICoreWebView2WebMessageReceivedEventArgs* args) {
    CHECK(sender == nullptr);
    CHECK(args == nullptr);
    g_called_with = window;
    return E_ABORT;
}

HWND some_window() {
    return reinterpret_cast<HWND>(static_cast<UINT_PTR>(0x1234));
}

ComPtr<Handler> some_handler() {
    return make_handler<Handler>(IID_ICoreWebView2WebMessageReceivedEventHandler, some_window(), note_call);
}

} // namespace

TEST_CASE("a handler answers IUnknown and its own id with itself and one more reference") {
    const ComPtr<Handler> handler = some_handler();
    for (const IID& id : {IID_IUnknown, IID_ICoreWebView2WebMessageReceivedEventHandler}) {
        void* object = nullptr;
        CHECK(handler->QueryInterface(id, &object) == S_OK);
        CHECK(object == handler.get());
        CHECK(handler->Release() == 1);
    }
}

TEST_CASE("a handler refuses every other id and clears the pointer") {
    const ComPtr<Handler> handler = some_handler();
    void* object = handler.get();
    CHECK(handler->QueryInterface(IID_ICoreWebView2NavigationCompletedEventHandler, &object) ==
          E_NOINTERFACE);
    CHECK(object == nullptr);
    CHECK(handler->QueryInterface(IID_IUnknown, nullptr) == E_POINTER);
    CHECK(handler->AddRef() == 2);
    CHECK(handler->Release() == 1);
}

TEST_CASE("a handler starts with the one reference of its maker and goes with its last") {
    ComPtr<Handler> handler = some_handler();
    Handler* const object = handler.get();
    CHECK(object->AddRef() == 2);
    handler.reset();
    CHECK(object->AddRef() == 2);
    CHECK(object->Release() == 1);
    CHECK(object->Release() == 0);
}

TEST_CASE("a handler passes its call on with its window and gives back the result") {
    const ComPtr<Handler> handler = some_handler();
    g_called_with = nullptr;
    CHECK(handler->Invoke(nullptr, nullptr) == E_ABORT);
    CHECK(g_called_with == some_window());
}
