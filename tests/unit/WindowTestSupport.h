#pragma once
// What the window tests share: a window of the test's own that records what reaches it,
// a window whose thread stops answering, and waiting by counted looks.
#include "core/runtime/ComPtr.h"
#include "core/runtime/Platform.h"
#include "TestSupport.h"
#include "Vx_Main.h"

#include <functional>
#include <vector>

namespace vxtest {

// Waits never read a clock: they count looks. A look handles every message pending for
// this thread and then lets other programs run. A wait ends as soon as its state holds;
// its bound is far beyond what the slowest lane under load needs, so that running out of
// it means a fault.
constexpr long kPatience = 200000;

inline void pumpOnce() {
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
    SwitchToThread();
}

// Pumps until done() holds; false when it never did.
inline bool pumpUntil(const std::function<bool()>& done) {
    for (long i = 0; i < kPatience; ++i) {
        if (done()) return true;
        pumpOnce();
    }
    return done();
}

inline LONG handleOf(HWND hwnd) { return static_cast<LONG>(reinterpret_cast<LONG_PTR>(hwnd)); }

inline LONG handleOf(_Ds_ENumAction* window) {
    LONG h = -12345;
    if (window) window->get_MyHwndWin(&h);
    return h;
}

inline vx::ComPtr<_Ds_EnumChid> newFinder() { return createObject(CLSID_Ds_EnumChid).query<_Ds_EnumChid>(); }

inline vx::ComPtr<_Ds_ENumAction> newWindow(HWND hwnd) {
    auto w = createObject(CLSID_Ds_ENumAction).query<_Ds_ENumAction>();
    w->put_MyHwndWin(handleOf(hwnd));
    return w;
}

// Whether lParam points at a 32-bit zero. The memory is asked about before it is read:
// a read that faults is not something to catch (under emulation a fault may not even be
// reported as an access violation).
inline bool pointsAtZero(LPARAM lp) {
    const auto* p = reinterpret_cast<const BYTE*>(lp);
    MEMORY_BASIC_INFORMATION mbi{};
    if (!p || VirtualQuery(p, &mbi, sizeof mbi) != sizeof mbi || mbi.State != MEM_COMMIT) return false;
    const DWORD readable = PAGE_READONLY | PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READ |
                           PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
    if (!(mbi.Protect & readable) || (mbi.Protect & PAGE_GUARD)) return false;
    if (p + sizeof(LONG) > static_cast<const BYTE*>(mbi.BaseAddress) + mbi.RegionSize) return false;
    return *reinterpret_cast<const LONG*>(p) == 0;
}

// A top-level window of the test's own thread that records the messages that reach it:
// closing, keys, the left button and WM_USER + 1 (answered with 77).
class Recorder {
public:
    struct Message {
        UINT msg;
        WPARAM wParam;
        LPARAM lParam;
        bool zeroAtLParam;  // a closing message's lParam pointed at a 32-bit zero
    };
    std::vector<Message> messages;  // oldest first

    explicit Recorder(const char* title = "Vx Recorder", int x = 300, int y = 300, int w = 300, int h = 200) {
        static const ATOM registered = [] {
            WNDCLASSA wc{};
            wc.lpfnWndProc = proc;
            wc.hInstance = GetModuleHandleA(nullptr);
            wc.hCursor = LoadCursor(nullptr, IDC_ARROW);
            wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
            wc.lpszClassName = "VxRecorder";
            return RegisterClassA(&wc);
        }();
        (void)registered;
        hwnd_ = CreateWindowExA(0, "VxRecorder", title, WS_OVERLAPPEDWINDOW | WS_VISIBLE, x, y, w, h, nullptr, nullptr,
                                GetModuleHandleA(nullptr), nullptr);
        SetWindowLongPtrA(hwnd_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        pumpOnce();
    }
    ~Recorder() {
        SetWindowLongPtrA(hwnd_, GWLP_USERDATA, 0);
        DestroyWindow(hwnd_);
        pumpOnce();
    }
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    HWND hwnd() const { return hwnd_; }
    LONG handle() const { return handleOf(hwnd_); }
    // A child window of class Static.
    HWND addChild(const char* title) {
        return CreateWindowExA(0, "Static", title, WS_CHILD, 0, 0, 10, 10, hwnd_, nullptr, nullptr, nullptr);
    }
    // Makes it the foreground window with the keyboard focus.
    bool makeForeground() {
        SetForegroundWindow(hwnd_);
        SetFocus(hwnd_);
        return pumpUntil([&] { return GetForegroundWindow() == hwnd_ && GetFocus() == hwnd_; });
    }
    // Runs during the next yield, from a posted message: a host event handler.
    void onNextYield(std::function<void()> handler) {
        handler_ = std::move(handler);
        PostMessageA(hwnd_, kRunHandler, 0, 0);
    }

private:
    static constexpr UINT kRunHandler = WM_APP + 7;

    static LRESULT CALLBACK proc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
        auto* self = reinterpret_cast<Recorder*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
        if (!self) return DefWindowProcA(hwnd, msg, wp, lp);
        switch (msg) {
        case kRunHandler: {
            auto handler = std::move(self->handler_);
            self->handler_ = nullptr;
            if (handler) handler();
            return 0;
        }
        case WM_CLOSE:
        case WM_SYSCOMMAND:
        case WM_KEYDOWN:
        case WM_KEYUP:
        case WM_LBUTTONDOWN:
        case WM_LBUTTONUP:
        case WM_USER + 1: {
            const bool zero = (msg == WM_CLOSE || msg == WM_SYSCOMMAND) && pointsAtZero(lp);
            self->messages.push_back(Message{msg, wp, lp, zero});
            return msg == WM_USER + 1 ? 77 : 0;  // WM_CLOSE and WM_SYSCOMMAND do not close it
        }
        }
        return DefWindowProcA(hwnd, msg, wp, lp);
    }

    HWND hwnd_ = nullptr;
    std::function<void()> handler_;
};

// A hidden top-level window on a thread of its own that stops reading messages once the
// window exists, as a program that has hung. The thread goes on (and ends, taking its
// window along) when the object goes, whatever the test did meanwhile.
class HungWindow {
public:
    explicit HungWindow(const char* title) : title_(title) {
        ready_ = CreateEventA(nullptr, TRUE, FALSE, nullptr);
        release_ = CreateEventA(nullptr, TRUE, FALSE, nullptr);
        thread_ = CreateThread(nullptr, 0, run, this, 0, nullptr);
        WaitForSingleObject(ready_, INFINITE);
    }
    ~HungWindow() {
        SetEvent(release_);
        // Pumped meanwhile: the window's last messages may be sent to this thread.
        while (MsgWaitForMultipleObjects(1, &thread_, FALSE, INFINITE, QS_ALLINPUT) != WAIT_OBJECT_0) pumpOnce();
        CloseHandle(thread_);
        CloseHandle(release_);
        CloseHandle(ready_);
    }
    HungWindow(const HungWindow&) = delete;
    HungWindow& operator=(const HungWindow&) = delete;

    HWND hwnd() const { return hwnd_; }

private:
    static DWORD WINAPI run(void* param) {
        auto* self = static_cast<HungWindow*>(param);
        self->hwnd_ = CreateWindowExA(0, "Static", self->title_, WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, nullptr,
                                      nullptr, nullptr, nullptr);
        SetEvent(self->ready_);
        WaitForSingleObject(self->release_, INFINITE);  // not a message is read meanwhile
        DestroyWindow(self->hwnd_);
        return 0;
    }

    const char* title_;
    HWND hwnd_ = nullptr;
    HANDLE ready_ = nullptr, release_ = nullptr, thread_ = nullptr;
};

}  // namespace vxtest
