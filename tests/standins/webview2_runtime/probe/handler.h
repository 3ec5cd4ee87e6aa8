#pragma once

#include <functional>
#include <set>
#include <string>
#include <utility>

#include "webview2/interfaces.h"

/// What the runtime has asked the handlers for, each kind of question once. Window's thread only.
inline std::set<std::string> g_questions;

/// A handler of the probe: any of the five interfaces, whose Invoke takes an A and a B.
template<typename Interface, typename A, typename B>
class Handler final : public Interface {
  public:
    Handler(REFIID iid, std::function<void(A, B)> action) : iid_(iid), action_(std::move(action)) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        g_questions.insert(object == nullptr     ? "for nothing"
                           : iid == IID_IUnknown ? "IUnknown"
                           : iid == iid_         ? "its own id"
                                                 : "another id");
        if (object == nullptr) {
            return E_POINTER;
        }
        *object = iid == IID_IUnknown || iid == iid_ ? this : nullptr;
        if (*object == nullptr) {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) {
            delete this;
        }
        return left;
    }
    HRESULT STDMETHODCALLTYPE Invoke(A a, B b) override {
        action_(a, b);
        return S_OK;
    }

  private:
    ~Handler() = default;
    IID iid_;
    std::function<void(A, B)> action_;
    ULONG references_ = 1;
};

using EnvironmentHandler =
    Handler<ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler, HRESULT, ICoreWebView2Environment*>;
using ControllerHandler =
    Handler<ICoreWebView2CreateCoreWebView2ControllerCompletedHandler, HRESULT, ICoreWebView2Controller*>;
using MessageHandler = Handler<ICoreWebView2WebMessageReceivedEventHandler, ICoreWebView2*,
                               ICoreWebView2WebMessageReceivedEventArgs*>;
using NavigationHandler = Handler<ICoreWebView2NavigationCompletedEventHandler, ICoreWebView2*,
                                  ICoreWebView2NavigationCompletedEventArgs*>;
using ScriptHandler = Handler<ICoreWebView2ExecuteScriptCompletedHandler, HRESULT, LPCWSTR>;
