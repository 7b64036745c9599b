#pragma once
// An owning reference to a COM object: AddRef on copy, Release on destruction.
#include "core/runtime/Platform.h"
#include <utility>

namespace vx {

template <class T>
class ComPtr {
public:
    ComPtr() noexcept = default;
    ComPtr(std::nullptr_t) noexcept {}
    // Takes a new reference to p.
    explicit ComPtr(T* p) noexcept : p_(p) { if (p_) p_->AddRef(); }
    ComPtr(const ComPtr& o) noexcept : ComPtr(o.p_) {}
    ComPtr(ComPtr&& o) noexcept : p_(std::exchange(o.p_, nullptr)) {}
    template <class U>
    ComPtr(const ComPtr<U>& o) noexcept : ComPtr(static_cast<T*>(o.get())) {}
    ~ComPtr() { reset(); }

    ComPtr& operator=(ComPtr o) noexcept { std::swap(p_, o.p_); return *this; }

    // Adopts a reference the caller already owns (as returned by a COM out parameter).
    static ComPtr adopt(T* p) noexcept { ComPtr r; r.p_ = p; return r; }

    void reset() noexcept { if (T* p = std::exchange(p_, nullptr)) p->Release(); }
    T* get() const noexcept { return p_; }
    T* operator->() const noexcept { return p_; }
    T& operator*() const noexcept { return *p_; }
    explicit operator bool() const noexcept { return p_ != nullptr; }
    // For COM out parameters: releases what is held and hands out the slot.
    T** put() noexcept { reset(); return &p_; }
    // Gives the reference to the caller (an out parameter).
    T* detach() noexcept { return std::exchange(p_, nullptr); }

    template <class U>
    ComPtr<U> query() const noexcept {
        ComPtr<U> r;
        if (p_) p_->QueryInterface(__uuidof(U), reinterpret_cast<void**>(r.put()));
        return r;
    }

private:
    T* p_ = nullptr;
};

template <class T, class U>
bool operator==(const ComPtr<T>& a, const ComPtr<U>& b) noexcept { return a.get() == b.get(); }

}  // namespace vx
