// Threads and a lock by the system's own calls: the compiler that we build with has no std::thread and no
// std::mutex, which the program has no use for.
#pragma once

#include <functional>
#include <memory>
#include <utility>

#include <windows.h>

/// For std::lock_guard and std::unique_lock. Needs no destructor: it may be held when the process ends.
class SystemLock {
  public:
    void lock() { AcquireSRWLockExclusive(&lock_); }
    bool try_lock() { return TryAcquireSRWLockExclusive(&lock_) != FALSE; }
    void unlock() { ReleaseSRWLockExclusive(&lock_); }

  private:
    SRWLOCK lock_ = SRWLOCK_INIT;
};

/// Starts a thread that does `work`; the caller closes its handle. Null when there was none to be had.
inline HANDLE start_thread(std::function<void()> work) {
    auto owned = std::make_unique<std::function<void()>>(std::move(work));
    HANDLE thread = CreateThread(
        nullptr, 0,
        [](LPVOID given) -> DWORD {
            (*std::unique_ptr<std::function<void()>>(static_cast<std::function<void()>*>(given)))();
            return 0;
        },
        owned.get(), 0, nullptr);
    if (thread != nullptr) {
        static_cast<void>(owned.release()); // the thread has it now
    }
    return thread;
}

/// The same, and nobody waits for it.
inline void start_detached_thread(std::function<void()> work) {
    CloseHandle(start_thread(std::move(work)));
}

/// The same, and waits for its end.
inline void run_on_another_thread(std::function<void()> work) {
    HANDLE thread = start_thread(std::move(work));
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
}
