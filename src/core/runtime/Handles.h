#pragma once
// Owning wrappers for the platform's handles, so that no path through a member
// (a thrown error included) leaks one.
#include <windows.h>
#include <utility>

namespace vx {

template <class Traits>
class UniqueHandle {
public:
    using Handle = typename Traits::Handle;
    UniqueHandle() noexcept = default;
    explicit UniqueHandle(Handle h) noexcept : h_(h) {}
    UniqueHandle(UniqueHandle&& o) noexcept : h_(std::exchange(o.h_, Traits::invalid())) {}
    UniqueHandle& operator=(UniqueHandle&& o) noexcept {
        if (this != &o) { reset(); h_ = std::exchange(o.h_, Traits::invalid()); }
        return *this;
    }
    UniqueHandle(const UniqueHandle&) = delete;
    UniqueHandle& operator=(const UniqueHandle&) = delete;
    ~UniqueHandle() { reset(); }

    Handle get() const noexcept { return h_; }
    explicit operator bool() const noexcept { return h_ != Traits::invalid(); }
    Handle* put() noexcept { reset(); return &h_; }
    Handle release() noexcept { return std::exchange(h_, Traits::invalid()); }
    void reset(Handle h = Traits::invalid()) noexcept {
        if (h_ != Traits::invalid()) Traits::close(h_);
        h_ = h;
    }

private:
    Handle h_ = Traits::invalid();
};

struct RegKeyTraits {
    using Handle = HKEY;
    static Handle invalid() noexcept { return nullptr; }
    static void close(Handle h) noexcept { RegCloseKey(h); }
};
struct KernelHandleTraits {
    using Handle = HANDLE;
    static Handle invalid() noexcept { return nullptr; }
    static void close(Handle h) noexcept { CloseHandle(h); }
};
struct FileHandleTraits {
    using Handle = HANDLE;
    static Handle invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void close(Handle h) noexcept { CloseHandle(h); }
};
struct GlobalMemoryTraits {
    using Handle = HGLOBAL;
    static Handle invalid() noexcept { return nullptr; }
    static void close(Handle h) noexcept { GlobalFree(h); }
};
struct ModuleTraits {
    using Handle = HMODULE;
    static Handle invalid() noexcept { return nullptr; }
    static void close(Handle h) noexcept { FreeLibrary(h); }
};

using UniqueRegKey = UniqueHandle<RegKeyTraits>;
using UniqueKernelHandle = UniqueHandle<KernelHandleTraits>;
using UniqueFile = UniqueHandle<FileHandleTraits>;
using UniqueGlobal = UniqueHandle<GlobalMemoryTraits>;
using UniqueModule = UniqueHandle<ModuleTraits>;

// A window's device context, released to its window.
class WindowDC {
public:
    explicit WindowDC(HWND hwnd) noexcept : hwnd_(hwnd), dc_(GetDC(hwnd)) {}
    WindowDC(const WindowDC&) = delete;
    WindowDC& operator=(const WindowDC&) = delete;
    ~WindowDC() { if (dc_) ReleaseDC(hwnd_, dc_); }
    HDC get() const noexcept { return dc_; }

private:
    HWND hwnd_;
    HDC dc_;
};

}  // namespace vx
