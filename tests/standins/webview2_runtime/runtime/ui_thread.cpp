#include "ui_thread.h"

#include <deque>
#include <mutex>
#include <string>
#include <utility>

#include "journal.h"
#include "system_threads.h"

namespace {

constexpr const wchar_t* window_class = L"OrvantaWebViewStandInEvents";
constexpr UINT wake_message = WM_APP;

DWORD g_ui_thread_id = 0;
HWND g_event_window = nullptr;
bool g_is_running_event = false; // UI thread only

// Never freed: what still waits at process exit must not run or be destroyed then.
auto& g_events_lock = *new SystemLock();
auto& g_events = *new std::deque<std::function<void()>>();
bool g_is_wake_posted = false;

/// The posted message stands for all events: a queue of the system holds no more than 10,000.
void post_wake_if_needed() {
    if (!g_events.empty() && !g_is_wake_posted) {
        g_is_wake_posted = PostMessageW(g_event_window, wake_message, 0, 0) != 0;
    }
}

void run_next_event() {
    std::function<void()> event;
    {
        const std::lock_guard<SystemLock> guard(g_events_lock);
        g_is_wake_posted = false;
        if (g_events.empty()) {
            return;
        }
        if (g_is_running_event) {
            record_note(L"messages were pumped inside a handler; the next event waits for its end");
            return;
        }
        event = std::move(g_events.front());
        g_events.pop_front();
    }
    g_is_running_event = true;
    event();
    g_is_running_event = false;
    const std::lock_guard<SystemLock> guard(g_events_lock);
    post_wake_if_needed();
}

LRESULT CALLBACK event_window_procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
    if (message == wake_message) {
        run_next_event();
        return 0;
    }
    return DefWindowProcW(window, message, wparam, lparam);
}

} // namespace

HINSTANCE runtime_module() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&g_event_window), &module);
    return module;
}

void adopt_ui_thread() {
    if (g_event_window != nullptr) {
        return;
    }
    g_ui_thread_id = GetCurrentThreadId();
    WNDCLASSEXW description = {};
    description.cbSize = sizeof(description);
    description.lpfnWndProc = event_window_procedure;
    description.hInstance = runtime_module();
    description.lpszClassName = window_class;
    RegisterClassExW(&description);
    g_event_window = CreateWindowExW(0, window_class, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                     description.hInstance, nullptr);
    if (g_event_window == nullptr) {
        record_trouble(L"the runtime's message window could not be made: error " +
                       std::to_wstring(GetLastError()));
    }
}

void run_on_ui_thread(std::function<void()> event) {
    const std::lock_guard<SystemLock> guard(g_events_lock);
    g_events.push_back(std::move(event));
    post_wake_if_needed();
}

bool is_on_ui_thread(const wchar_t* method) {
    if (GetCurrentThreadId() == g_ui_thread_id) {
        return true;
    }
    record_trouble(std::wstring(L"called on a thread that did not create the environment: ") + method);
    return false;
}
