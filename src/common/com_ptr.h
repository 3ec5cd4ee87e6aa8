#pragma once

#include <utility>

/// Owner of one reference to a COM object. Move-only: a second reference is taken in plain sight with AddRef.
template<typename Interface>
class ComPtr {
  public:
    ComPtr() = default;
    ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ComPtr& operator=(ComPtr&& other) noexcept {
        if (this != &other) {
            reset(std::exchange(other.object_, nullptr));
        }
        return *this;
    }
    ComPtr(const ComPtr&) = delete;
    ComPtr& operator=(const ComPtr&) = delete;
    ~ComPtr() { reset(); }

    [[nodiscard]] Interface* get() const { return object_; }
    Interface* operator->() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }

    /// Releases what is held and takes over a reference that the caller owns.
    void reset(Interface* object = nullptr) {
        if (Interface* const old = std::exchange(object_, object)) {
            old->Release();
        }
    }

    /// The address for a call that hands out a reference; releases what was held before.
    Interface** out() {
        reset();
        return &object_;
    }

    /// The same for calls that take the address of an untyped pointer.
    void** out_void() { return reinterpret_cast<void**>(out()); }

  private:
    Interface* object_ = nullptr;
};
