#include "view_commands.h"

#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

#include <objbase.h>

#include "handler.h"
#include "objects.h"
#include "print.h"
#include "system_threads.h"

namespace {

// What the runtime posts to itself when there is an event to handle.
constexpr UINT runtime_event_message = WM_APP;

bool g_is_counting = false;
bool g_is_echoing = false;
bool g_is_pumping = false;
int g_count = 0;
int g_out_of_order = 0;

void on_message(ICoreWebView2* sender, ICoreWebView2WebMessageReceivedEventArgs* args) {
    LPWSTR text = nullptr;
    const HRESULT result = args->TryGetWebMessageAsString(&text);
    if (g_is_counting) {
        g_out_of_order += text == nullptr || std::to_wstring(g_count) != text ? 1 : 0;
        ++g_count;
    } else if (text == nullptr) {
        print("message " + hex(result));
    } else if (std::wstring_view(text).size() > 1000) {
        print("message of " + std::to_string(std::wstring_view(text).size()));
    } else {
        print("message " + ascii_from(text));
    }
    if (std::exchange(g_is_pumping, false)) {
        MSG message = {};
        GetMessageW(&message, nullptr, runtime_event_message, runtime_event_message);
        DispatchMessageW(&message);
        print("pumped");
    }
    if (g_is_echoing && text != nullptr) {
        sender->PostWebMessageAsString((L"echo " + std::wstring(text)).c_str());
    }
    CoTaskMemFree(text);
}

std::string rest_of(std::istream& words) {
    std::string rest;
    std::getline(words >> std::ws, rest);
    return rest;
}

} // namespace

void listen_to_messages(std::istream& /*words*/) {
    auto* const handler = new MessageHandler(IID_ICoreWebView2WebMessageReceivedEventHandler, on_message);
    EventRegistrationToken token = {};
    const HRESULT result = g_view->add_WebMessageReceived(handler, &token);
    print("listen " + hex(result) + (token.value == 0 ? " no token" : " token"));
    handler->Release();
}

void listen_to_loads(std::istream& /*words*/) {
    auto* const handler =
        new NavigationHandler(IID_ICoreWebView2NavigationCompletedEventHandler,
                              [](ICoreWebView2* sender, ICoreWebView2NavigationCompletedEventArgs*) {
                                  print(sender == g_view ? "loaded" : "loaded, but another view says so");
                              });
    EventRegistrationToken token = {};
    print("listen to loads " + hex(g_view->add_NavigationCompleted(handler, &token)));
    handler->Release();
}

void print_questions(std::istream& /*words*/) {
    std::string line = "questions";
    for (const std::string& question : g_questions) {
        line += ", " + question;
    }
    print(line);
}

/// A handler that answers somebody else's id.
void listen_badly(std::istream& /*words*/) {
    auto* const handler = new MessageHandler(IID_ICoreWebView2NavigationCompletedEventHandler, on_message);
    EventRegistrationToken token = {};
    print("listen badly " + hex(g_view->add_WebMessageReceived(handler, &token)));
    handler->Release();
}

void navigate_to_file(std::istream& words) {
    std::ifstream file(rest_of(words), std::ios::binary);
    const std::string html{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    print("navigate " + hex(g_view->NavigateToString(wide_from(html).c_str())));
}

/// A page of so many characters, the limit being 1,048,576.
void navigate_to_size(std::istream& words) {
    std::size_t size = 0;
    words >> size;
    print("navigate " + hex(g_view->NavigateToString(std::wstring(size, L'x').c_str())));
}

void post(std::istream& words) {
    print("post " + hex(g_view->PostWebMessageAsString(wide_from(rest_of(words)).c_str())));
}

/// Half a surrogate pair: no valid text, but a string all the same.
void post_half_pair(std::istream& /*words*/) {
    const wchar_t text[] = {L'a', static_cast<wchar_t>(0xD83D), L'b', L'\0'};
    print("post " + hex(g_view->PostWebMessageAsString(text)));
}

void post_size(std::istream& words) {
    std::size_t size = 0;
    words >> size;
    print("post " + hex(g_view->PostWebMessageAsString(std::wstring(size, L'x').c_str())));
}

void post_burst(std::istream& words) {
    int count = 0;
    words >> count;
    for (int i = 0; i < count; ++i) {
        g_view->PostWebMessageAsString(std::to_wstring(i).c_str());
    }
    print("burst done");
}

void execute_script(std::istream& words) {
    auto* const handler =
        new ScriptHandler(IID_ICoreWebView2ExecuteScriptCompletedHandler, [](HRESULT result, LPCWSTR json) {
            print("script " + hex(result) + " " + ascii_from(json));
        });
    const HRESULT result = g_view->ExecuteScript(wide_from(rest_of(words)).c_str(), handler);
    if (FAILED(result)) {
        print("script call " + hex(result));
    }
    handler->Release();
}

void execute_script_without_handler(std::istream& words) {
    print("script call " + hex(g_view->ExecuteScript(wide_from(rest_of(words)).c_str(), nullptr)));
}

void call_from_another_thread(std::istream& /*words*/) {
    HRESULT result = S_OK;
    run_on_another_thread([&result] { result = g_view->PostWebMessageAsString(L"from elsewhere"); });
    print("other thread " + hex(result));
}

void call_unused_method(std::istream& /*words*/) {
    print("unused " + hex(g_view->OpenDevToolsWindow()));
}

void print_count(std::istream& /*words*/) {
    print("count " + std::to_string(g_count) + " out of order " + std::to_string(g_out_of_order));
}

void count_messages(std::istream& /*words*/) {
    g_is_counting = true;
    print("counting");
}

void echo_messages(std::istream& /*words*/) {
    g_is_echoing = true;
    print("echoing");
}

void pump_messages(std::istream& /*words*/) {
    g_is_pumping = true;
    print("pumping");
}
