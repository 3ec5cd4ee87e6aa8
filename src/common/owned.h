#pragma once

#include <utility>

#include <windows.h>

/// Owner of one Windows handle. A kind names the raw type, the value that means "none" and the function that
/// closes it. Move-only, as large as the raw handle.
template<typename Kind>
class Owned {
  public:
    using Raw = typename Kind::Raw;

    Owned() = default;
    explicit Owned(Raw handle) : handle_(handle) {}
    Owned(Owned&& other) noexcept : handle_(std::exchange(other.handle_, Kind::none())) {}
    Owned& operator=(Owned&& other) noexcept {
        if (this != &other) {
            reset(std::exchange(other.handle_, Kind::none()));
        }
        return *this;
    }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;
    ~Owned() { reset(); }

    [[nodiscard]] Raw get() const { return handle_; }
    explicit operator bool() const { return handle_ != Kind::none(); }

    /// Closes what is held and takes over another handle, or none.
    void reset(Raw handle = Kind::none()) {
        if (handle_ != Kind::none()) {
            Kind::close(handle_);
        }
        handle_ = handle;
    }

    /// The address for a call that hands out a handle; closes what was held before.
    Raw* out() {
        reset();
        return &handle_;
    }

  private:
    Raw handle_ = Kind::none();
};

/// Processes, threads and other kernel objects whose empty value is null.
struct KernelHandleKind {
    using Raw = HANDLE;
    static Raw none() { return nullptr; }
    static void close(Raw handle) { CloseHandle(handle); }
};
using OwnedHandle = Owned<KernelHandleKind>;

/// Files and snapshots, whose empty value is INVALID_HANDLE_VALUE.
struct FileHandleKind {
    using Raw = HANDLE;
    static Raw none() { return INVALID_HANDLE_VALUE; }
    static void close(Raw handle) { CloseHandle(handle); }
};
using OwnedFile = Owned<FileHandleKind>;

struct RegistryKeyKind {
    using Raw = HKEY;
    static Raw none() { return nullptr; }
    static void close(Raw key) { RegCloseKey(key); }
};
using OwnedKey = Owned<RegistryKeyKind>;

/// The service control manager and services.
struct ServiceHandleKind {
    using Raw = SC_HANDLE;
    static Raw none() { return nullptr; }
    static void close(Raw handle) { CloseServiceHandle(handle); }
};
using OwnedService = Owned<ServiceHandleKind>;
