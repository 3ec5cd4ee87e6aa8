// What happens to the lists when other programs change them at the same moment.
#include <doctest/doctest.h>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <windows.h>
#include <winternl.h>

#include "before_each_case.h"
#include "common/owned.h"
#include "common/pending_operations.h"
#include "intercepted_call.h"
#include "pending_lists.h"

// NOLINTNEXTLINE(readability-identifier-naming): Windows' own name.
extern "C" NTSTATUS NTAPI NtCreateMutant(HANDLE* mutant, ACCESS_MASK access, OBJECT_ATTRIBUTES* attributes,
                                         BOOLEAN is_owned);

namespace {

using Steps = std::vector<std::wstring>;

const std::wstring folder = L"C:\\Our suite\\FWC";
const std::wstring before = list_of({L"\\??\\C:\\Our suite\\FWC\\a.exe", L"", L"\\??\\C:\\first.txt", L""});

// Another program's turns, after each whole reading and each writing of ours; on the test's thread.
std::function<void()> g_after_read;
std::function<void()> g_after_write;
Steps g_steps;
const BeforeEachCase start_anew([] {
    g_after_read = nullptr;
    g_after_write = nullptr;
    g_steps.clear();
});

void take_turn(std::function<void()>& turn) {
    // The other program's own calls come by here, too.
    if (const std::function<void()> now = std::exchange(turn, nullptr)) {
        now();
    }
}

LSTATUS WINAPI watched_read(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, BYTE* data,
                            LPDWORD size) {
    const LSTATUS status =
        real_function<decltype(RegQueryValueExW)>("RegQueryValueExW")(key, name, reserved, type, data, size);
    if (status == ERROR_SUCCESS) {
        g_steps.emplace_back(L"read");
        take_turn(g_after_read);
    }
    return status;
}

LSTATUS WINAPI watched_write(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data,
                             DWORD size) {
    const LSTATUS status =
        real_function<decltype(RegSetValueExW)>("RegSetValueExW")(key, name, reserved, type, data, size);
    g_steps.emplace_back(L"write");
    take_turn(g_after_write);
    return status;
}

DWORD WINAPI watched_wait(HANDLE object, DWORD time_ms) {
    g_steps.push_back(L"wait " + std::to_wstring(time_ms));
    return real_function<decltype(WaitForSingleObject)>("WaitForSingleObject")(object, time_ms);
}

DWORD WINAPI wait_in_vain(HANDLE /*object*/, DWORD time_ms) {
    g_steps.push_back(L"wait " + std::to_wstring(time_ms));
    return WAIT_TIMEOUT;
}

BOOL WINAPI watched_release(HANDLE mutex) {
    g_steps.emplace_back(L"release");
    return real_function<decltype(ReleaseMutex)>("ReleaseMutex")(mutex);
}

/// The lock that Windows makes when it starts and Wine never does.
OwnedHandle make_lists_lock() {
    std::wstring text = L"\\PendingRenameMutex";
    UNICODE_STRING name = {};
    name.Buffer = text.data();
    name.Length = static_cast<USHORT>(text.size() * sizeof(wchar_t));
    name.MaximumLength = name.Length;
    OBJECT_ATTRIBUTES attributes = {};
    InitializeObjectAttributes(&attributes, &name, 0, nullptr, nullptr);
    HANDLE lock = nullptr;
    REQUIRE(NtCreateMutant(&lock, MUTEX_ALL_ACCESS, &attributes, FALSE) == 0);
    return OwnedHandle(lock);
}

constexpr DWORD longest_wait_ms = 60000;

/// Another program that has taken the lock and changes the list only when it is waited for.
struct OtherProgram {
    HANDLE lock = nullptr;
    OwnedHandle has_lock = OwnedHandle(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    OwnedHandle is_awaited = OwnedHandle(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    bool lets_go = true;
};

OtherProgram* g_other = nullptr; // set before the thread below starts

DWORD WINAPI change_list_under_lock(void* /*parameter*/) {
    auto* const wait = real_function<decltype(WaitForSingleObject)>("WaitForSingleObject");
    wait(g_other->lock, longest_wait_ms);
    SetEvent(g_other->has_lock.get());
    wait(g_other->is_awaited.get(), longest_wait_ms);
    // Without doctest, which belongs to the test's thread.
    const std::wstring list = list_of({L"\\??\\C:\\Our suite\\FWC\\a.exe", L"", L"\\??\\C:\\first.txt", L"",
                                       L"*1\\??\\C:\\under lock.txt", L""});
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, session_manager_key.c_str(), first_list, REG_MULTI_SZ, list.data(),
                    static_cast<DWORD>(list.size() * sizeof(wchar_t)));
    if (g_other->lets_go) {
        real_function<decltype(ReleaseMutex)>("ReleaseMutex")(g_other->lock);
    }
    return 0;
}

DWORD WINAPI wait_for_other(HANDLE object, DWORD time_ms) {
    g_steps.push_back(L"wait " + std::to_wstring(time_ms));
    SetEvent(g_other->is_awaited.get());
    return real_function<decltype(WaitForSingleObject)>("WaitForSingleObject")(object, time_ms);
}

} // namespace

TEST_CASE("an entry that another program adds between our looks is kept") {
    store_list(first_list, before);
    const InterceptedCall read("RegQueryValueExW", watched_read);
    g_after_read = [] { schedule_deletion(L"C:\\meanwhile.txt"); };
    cancel_pending_deletions_below(folder);
    check_list(first_list, {L"\\??\\C:\\first.txt", L"", L"\\??\\C:\\meanwhile.txt", L""});
}

TEST_CASE("a list that another program takes away between our looks is not made again") {
    store_list(first_list, before);
    const InterceptedCall read("RegQueryValueExW", watched_read);
    g_after_read = [] { delete_list(first_list); };
    cancel_pending_deletions_below(folder);
    CHECK_FALSE(stored_list(first_list).has_value());
}

TEST_CASE("what another program writes back over our list is taken off anew") {
    store_list(first_list, before);
    const InterceptedCall write("RegSetValueExW", watched_write);
    g_after_write = [] { store_list(first_list, before); };
    cancel_pending_deletions_below(folder);
    check_list(first_list, {L"\\??\\C:\\first.txt", L""});
}

TEST_CASE("a list that another program changes all the time is given up with nothing lost") {
    store_list(first_list, before);
    int additions = 0;
    {
        const InterceptedCall read("RegQueryValueExW", watched_read);
        const std::function<void()> add = [&] {
            schedule_deletion((L"C:\\" + std::to_wstring(++additions)).c_str());
            g_after_read = add;
        };
        g_after_read = add;
        cancel_pending_deletions_below(folder);
        g_after_read = nullptr;
    }
    CHECK(additions == 32); // two looks in each of sixteen attempts
    std::wstring wanted = before.substr(0, before.size() - 1);
    for (int number = 1; number <= additions; ++number) {
        wanted += L"\\??\\C:\\" + std::to_wstring(number) + std::wstring(2, L'\0');
    }
    check_list(first_list, wanted + L'\0');
}

TEST_CASE("the lists are read and written under the lock of MoveFileEx") {
    const OwnedHandle lists_lock = make_lists_lock();
    store_list(first_list, before);
    {
        const InterceptedCall wait("WaitForSingleObject", watched_wait);
        const InterceptedCall read("RegQueryValueExW", watched_read);
        const InterceptedCall write("RegSetValueExW", watched_write);
        const InterceptedCall release("ReleaseMutex", watched_release);
        cancel_pending_deletions_below(folder);
    }
    CHECK(g_steps == Steps{L"wait 2000", L"read", L"read", L"write", L"read", L"release"});
    check_list(first_list, {L"\\??\\C:\\first.txt", L""});
    // It is free again.
    CHECK(WaitForSingleObject(lists_lock.get(), 0) == WAIT_OBJECT_0);
}

TEST_CASE("what another program writes while it holds the lock is waited for and kept") {
    const OwnedHandle lists_lock = make_lists_lock();
    store_list(first_list, before);
    OtherProgram other;
    other.lock = lists_lock.get();
    SUBCASE("when it lets go") {
    }
    SUBCASE("when it ends without letting go") {
        other.lets_go = false;
    }
    g_other = &other;
    g_steps.clear();
    const InterceptedCall wait("WaitForSingleObject", wait_for_other);
    const InterceptedCall release("ReleaseMutex", watched_release);
    const OwnedHandle thread(CreateThread(nullptr, 0, change_list_under_lock, nullptr, 0, nullptr));
    auto* const real_wait = real_function<decltype(WaitForSingleObject)>("WaitForSingleObject");
    REQUIRE(real_wait(other.has_lock.get(), longest_wait_ms) == WAIT_OBJECT_0);
    cancel_pending_deletions_below(folder);
    REQUIRE(real_wait(thread.get(), longest_wait_ms) == WAIT_OBJECT_0);
    CHECK(g_steps == Steps{L"wait 2000", L"release"});
    check_list(first_list, {L"\\??\\C:\\first.txt", L"", L"*1\\??\\C:\\under lock.txt", L""});
}

TEST_CASE("a lock that nobody lets go of holds nothing up") {
    const OwnedHandle lists_lock = make_lists_lock();
    store_list(first_list, before);
    const InterceptedCall wait("WaitForSingleObject", wait_in_vain);
    const InterceptedCall release("ReleaseMutex", watched_release);
    cancel_pending_deletions_below(folder);
    CHECK(g_steps == Steps{L"wait 2000"});
    check_list(first_list, {L"\\??\\C:\\first.txt", L""});
}
