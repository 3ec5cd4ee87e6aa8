#pragma once

#include <list>
#include <map>

#include "com_object.h"
#include "program_handler.h"
#include "unused_view_methods.h"
#include "wire.h"

/// The view: passes texts to the page in the bridge's browser and calls the program's handlers with what
/// comes back.
class View final : public ComObject<UnusedViewMethods, View> {
  public:
    static constexpr const wchar_t* object_name = L"ICoreWebView2";
    static bool answers(REFIID iid) { return iid == IID_ICoreWebView2; }

    HRESULT STDMETHODCALLTYPE get_Settings(ICoreWebView2Settings** settings) override;
    HRESULT STDMETHODCALLTYPE NavigateToString(LPCWSTR html) override;
    HRESULT STDMETHODCALLTYPE add_NavigationCompleted(ICoreWebView2NavigationCompletedEventHandler* handler,
                                                      EventRegistrationToken* token) override;
    HRESULT STDMETHODCALLTYPE ExecuteScript(LPCWSTR script,
                                            ICoreWebView2ExecuteScriptCompletedHandler* handler) override;
    HRESULT STDMETHODCALLTYPE PostWebMessageAsString(LPCWSTR text) override;
    HRESULT STDMETHODCALLTYPE add_WebMessageReceived(ICoreWebView2WebMessageReceivedEventHandler* handler,
                                                     EventRegistrationToken* token) override;

    /// Calls the handlers that an event of the page is meant for. UI thread.
    void handle(MessageReader& message);

    /// Lets go of every handler; all methods fail from now on. UI thread.
    void close();

    /// The browser process has died: all methods fail, the handlers stay. UI thread.
    void lose_browser() { is_usable_ = false; }

  private:
    HRESULT refusal(const wchar_t* method) const;
    template<typename Interface>
    HRESULT add_handler(std::list<ProgramHandler<Interface>>& handlers, Interface* handler, REFIID iid,
                        const wchar_t* handler_name, const wchar_t* method, EventRegistrationToken* token);
    void on_web_message(MessageReader& message);
    void on_navigation_completed();
    void on_script_result(MessageReader& message);

    bool is_usable_ = true;
    int last_id_ = 0;
    // In the order in which they were added, which is the order in which they are called. A list stands it
    // that a handler adds another one, which then gets the same event.
    std::list<ProgramHandler<ICoreWebView2WebMessageReceivedEventHandler>> message_handlers_;
    std::list<ProgramHandler<ICoreWebView2NavigationCompletedEventHandler>> navigation_handlers_;
    std::map<int, ProgramHandler<ICoreWebView2ExecuteScriptCompletedHandler>> script_handlers_;
};
