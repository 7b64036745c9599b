#pragma once
// What the window tests share: a window of the test's own that records what reaches it,
// and bounded waiting.
#include "core/runtime/ComPtr.h"
#include "core/runtime/Platform.h"
#include "TestSupport.h"
#include "Vx_Main.h"

#include <functional>
#include <vector>

namespace vxtest {

// Pumps this thread's messages for about ms.
inline void pumpFor(int ms) {
    const DWORD start = GetTickCount();
    MSG msg;
    while (static_cast<int>(GetTickCount() - start) < ms) {
        while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&msg);
            DispatchMessageW(&msg);
        }
        Sleep(5);
    }
}

// Pumps until done() holds, at most about limitMs; true when it held.
inline bool pumpUntil(const std::function<bool()>& done, int limitMs = 10000) {
    for (int waited = 0; waited <= limitMs; waited += 10) {
        if (done()) return true;
        pumpFor(10);
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
        pumpFor(20);
    }
    ~Recorder() {
        SetWindowLongPtrA(hwnd_, GWLP_USERDATA, 0);
        DestroyWindow(hwnd_);
        pumpFor(10);
    }
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    HWND hwnd() const { return hwnd_; }
    LONG handle() const { return handleOf(hwnd_); }
    // A child window of class Static.
    HWND addChild(const char* title) {
        return CreateWindowExA(0, "Static", title, WS_CHILD, 0, 0, 10, 10, hwnd_, nullptr, nullptr, nullptr);
    }
    // Makes it the foreground window with the keyboard focus (bounded wait).
    bool makeForeground() {
        SetForegroundWindow(hwnd_);
        SetFocus(hwnd_);
        return pumpUntil([&] { return GetForegroundWindow() == hwnd_ && GetFocus() == hwnd_; }, 3000);
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

}  // namespace vxtest
