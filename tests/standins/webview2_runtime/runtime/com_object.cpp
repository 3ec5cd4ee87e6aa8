#include "com_object.h"

#include <map>
#include <mutex>

#include "system_threads.h"

namespace {

// Never freed: objects may be released while the process is ending.
auto& g_counts = *new std::map<std::wstring, int>();
auto& g_counts_lock = *new SystemLock();

} // namespace

void count_object(const wchar_t* name, int change) {
    const std::lock_guard<SystemLock> guard(g_counts_lock);
    g_counts[name] += change;
}

std::wstring living_objects() {
    // At process exit the other threads are gone, perhaps with the lock: a report is not worth a hang.
    const std::unique_lock<SystemLock> guard(g_counts_lock, std::try_to_lock);
    std::wstring text;
    for (const auto& [name, count] : g_counts) {
        if (count != 0) {
            text += (text.empty() ? L"" : L", ") + name + L" x" + std::to_wstring(count);
        }
    }
    return text;
}
