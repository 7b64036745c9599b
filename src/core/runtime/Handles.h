#pragma once
// Owning wrappers for the platform's handles and for the calls that must be paired, so
// that no path through a member (a thrown error included) leaks a handle or leaves a
// clipboard open, an array locked or a library started:
//
//   UniqueRegKey, UniqueKernelHandle, UniqueFile, UniqueFind, UniqueGlobal, UniqueLocal,
//   UniqueModule, UniquePrinter, UniqueMixer, UniqueNetBuffer   a handle and its close call
//   WindowDC            GetDC ... ReleaseDC
//   ClipboardOpen       OpenClipboard ... CloseClipboard
//   WinsockSession      WSAStartup ... WSACleanup
//   GlobalLocked<T>     GlobalLock ... GlobalUnlock
//   SafeArrayAccess     SafeArrayAccessData ... SafeArrayUnaccessData
//   SafeArrayLockGuard  SafeArrayLock ... SafeArrayUnlock
//   ScopeExit           any clean-up of its own
//
// The close calls live in the system's libraries (winspool, winmm, netapi32, ws2_32): a
// subsystem that uses one of their owners links that library.
#include "core/runtime/Errors.h"
#include "core/runtime/Platform.h"

#include <lmcons.h>
#include <lmapibuf.h>

#include <type_traits>
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

// A handle that is null when there is none, closed by Close.
template <class H, auto Close>
struct ClosedBy {
    using Handle = H;
    static Handle invalid() noexcept { return nullptr; }
    static void close(Handle h) noexcept { Close(h); }
};
// A handle that is INVALID_HANDLE_VALUE when there is none, closed by Close.
template <auto Close>
struct ClosedUnlessInvalid {
    using Handle = HANDLE;
    static Handle invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void close(Handle h) noexcept { Close(h); }
};

using UniqueRegKey = UniqueHandle<ClosedBy<HKEY, &RegCloseKey>>;
using UniqueKernelHandle = UniqueHandle<ClosedBy<HANDLE, &CloseHandle>>;
using UniqueFile = UniqueHandle<ClosedUnlessInvalid<&CloseHandle>>;
using UniqueFind = UniqueHandle<ClosedUnlessInvalid<&FindClose>>;          // FindFirstFile ... FindClose
using UniqueGlobal = UniqueHandle<ClosedBy<HGLOBAL, &GlobalFree>>;
using UniqueLocal = UniqueHandle<ClosedBy<HLOCAL, &LocalFree>>;            // what the system allocated for the caller
using UniqueModule = UniqueHandle<ClosedBy<HMODULE, &FreeLibrary>>;
using UniquePrinter = UniqueHandle<ClosedBy<HANDLE, &ClosePrinter>>;       // OpenPrinter ... ClosePrinter
using UniqueMixer = UniqueHandle<ClosedBy<HMIXER, &mixerClose>>;           // mixerOpen ... mixerClose
using UniqueNetBuffer = UniqueHandle<ClosedBy<LPVOID, &NetApiBufferFree>>; // a buffer the Net functions filled

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

// The clipboard, open for this scope (test with operator bool: another program may hold it).
class ClipboardOpen {
public:
    explicit ClipboardOpen(HWND owner = nullptr) noexcept : open_(OpenClipboard(owner) != FALSE) {}
    ClipboardOpen(const ClipboardOpen&) = delete;
    ClipboardOpen& operator=(const ClipboardOpen&) = delete;
    ~ClipboardOpen() { if (open_) CloseClipboard(); }
    explicit operator bool() const noexcept { return open_; }

private:
    bool open_;
};

// The sockets library, started for this scope (test with operator bool).
class WinsockSession {
public:
    explicit WinsockSession(WORD version = MAKEWORD(2, 2)) noexcept {
        WSADATA data;
        started_ = WSAStartup(version, &data) == 0;
    }
    WinsockSession(const WinsockSession&) = delete;
    WinsockSession& operator=(const WinsockSession&) = delete;
    ~WinsockSession() { if (started_) WSACleanup(); }
    explicit operator bool() const noexcept { return started_; }

private:
    bool started_ = false;
};

// Global memory locked for this scope: get() is null when the lock failed.
template <class T>
class GlobalLocked {
public:
    explicit GlobalLocked(HGLOBAL memory) noexcept : memory_(memory), data_(static_cast<T*>(GlobalLock(memory))) {}
    GlobalLocked(const GlobalLocked&) = delete;
    GlobalLocked& operator=(const GlobalLocked&) = delete;
    ~GlobalLocked() { if (data_) GlobalUnlock(memory_); }
    T* get() const noexcept { return data_; }
    explicit operator bool() const noexcept { return data_ != nullptr; }

private:
    HGLOBAL memory_;
    T* data_;
};

// An array's elements, locked in place for this scope (SafeArrayAccessData). A failure is
// thrown as the call's HRESULT.
class SafeArrayAccess {
public:
    explicit SafeArrayAccess(SAFEARRAY* array) : array_(array) { check(SafeArrayAccessData(array_, &data_)); }
    SafeArrayAccess(const SafeArrayAccess&) = delete;
    SafeArrayAccess& operator=(const SafeArrayAccess&) = delete;
    ~SafeArrayAccess() { SafeArrayUnaccessData(array_); }
    void* data() const noexcept { return data_; }
    template <class T>
    T* as() const noexcept { return static_cast<T*>(data_); }

private:
    SAFEARRAY* array_;
    void* data_ = nullptr;
};

// An array locked for this scope (SafeArrayLock), so that it can be neither destroyed nor
// redimensioned while its elements are used. A failure is thrown as the call's HRESULT.
class SafeArrayLockGuard {
public:
    explicit SafeArrayLockGuard(SAFEARRAY* array) : array_(array) { check(SafeArrayLock(array_)); }
    SafeArrayLockGuard(const SafeArrayLockGuard&) = delete;
    SafeArrayLockGuard& operator=(const SafeArrayLockGuard&) = delete;
    ~SafeArrayLockGuard() { SafeArrayUnlock(array_); }

private:
    SAFEARRAY* array_;
};

// Runs a clean-up when the scope ends, however it ends, unless released first.
//     ScopeExit restore{[&] { SetCursorPos(saved.x, saved.y); }};
template <class F>
class ScopeExit {
public:
    explicit ScopeExit(F f) noexcept(std::is_nothrow_move_constructible_v<F>) : f_(std::move(f)) {}
    ScopeExit(const ScopeExit&) = delete;
    ScopeExit& operator=(const ScopeExit&) = delete;
    ~ScopeExit() { if (armed_) f_(); }
    void release() noexcept { armed_ = false; }

private:
    F f_;
    bool armed_ = true;
};

}  // namespace vx
