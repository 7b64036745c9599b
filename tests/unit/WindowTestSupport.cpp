#include "WindowTestSupport.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

namespace vxtest {

namespace {

constexpr UINT kRunHandler = WM_APP + 7;

std::wstring binFolder() {
    wchar_t path[MAX_PATH];
    DWORD n = GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring p(path, n);
    return p.substr(0, p.find_last_of(L"\\/") + 1);
}

}  // namespace

void pumpFor(int ms) {
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

bool pumpUntil(const std::function<bool()>& done, int limitMs) {
    for (int waited = 0; waited <= limitMs; waited += 10) {
        if (done()) return true;
        pumpFor(10);
    }
    return done();
}

LONG handleOf(HWND hwnd) { return static_cast<LONG>(reinterpret_cast<LONG_PTR>(hwnd)); }
HWND hwndOf(LONG handle) { return reinterpret_cast<HWND>(static_cast<LONG_PTR>(handle)); }

LONG handleOf(_Ds_ENumAction* window) {
    LONG h = -12345;
    if (window) window->get_MyHwndWin(&h);
    return h;
}

vx::ComPtr<_Ds_EnumChid> newFinder() { return createObject(CLSID_Ds_EnumChid).query<_Ds_EnumChid>(); }

vx::ComPtr<_Ds_ENumAction> newWindow(HWND hwnd) {
    auto w = createObject(CLSID_Ds_ENumAction).query<_Ds_ENumAction>();
    w->put_MyHwndWin(handleOf(hwnd));
    return w;
}

// ---- the fixture program ----

FixtureProgram::FixtureProgram() {
    std::wstring command = L"\"" + binFolder() + L"vx_window_fixture.exe\" 120";
    STARTUPINFOW si{};
    si.cb = sizeof si;
    if (!CreateProcessW(nullptr, &command[0], nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &process_)) {
        ADD_FAILURE() << "the fixture program did not start";
        return;
    }
    WaitForInputIdle(process_.hProcess, 10000);
    pumpUntil([&] {
        main_ = FindWindowA("VxFixtureMain", "Vx Fixture Main");
        dialog_ = FindWindowA("#32770", "Vx Fixture Dialog");
        return main_ && dialog_ && GetDlgItem(main_, 1007);
    });
    if (!main_ || !dialog_) ADD_FAILURE() << "the fixture's windows did not appear";
}

bool FixtureProgram::running() const {
    return process_.hProcess && WaitForSingleObject(process_.hProcess, 0) == WAIT_TIMEOUT;
}

bool FixtureProgram::waitForExit(int limitMs) const {
    return pumpUntil([&] { return !running(); }, limitMs);
}

FixtureProgram::~FixtureProgram() {
    if (!process_.hProcess) return;
    if (running()) {
        TerminateProcess(process_.hProcess, 1);
        WaitForSingleObject(process_.hProcess, 10000);
    }
    CloseHandle(process_.hThread);
    CloseHandle(process_.hProcess);
    // Its windows are gone before the next test looks for them.
    pumpUntil([] { return !FindWindowA("VxFixtureMain", nullptr) && !FindWindowA(nullptr, "Vx Fixture Dialog"); }, 5000);
}

// ---- the recorder ----

Recorder::Recorder(const char* title, int x, int y, int w, int h) {
    static bool registered = false;
    if (!registered) {
        WNDCLASSA wc{};
        wc.lpfnWndProc = proc;
        wc.hInstance = GetModuleHandleA(nullptr);
        wc.hCursor = LoadCursor(nullptr, IDC_ARROW);
        wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
        wc.lpszClassName = "VxRecorder";
        RegisterClassA(&wc);
        registered = true;
    }
    hwnd_ = CreateWindowExA(0, "VxRecorder", title, WS_OVERLAPPEDWINDOW | WS_VISIBLE, x, y, w, h, nullptr, nullptr,
                            GetModuleHandleA(nullptr), this);
    SetWindowLongPtrA(hwnd_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    pumpFor(20);
}

Recorder::~Recorder() {
    SetWindowLongPtrA(hwnd_, GWLP_USERDATA, 0);
    DestroyWindow(hwnd_);
    pumpFor(10);
}

bool Recorder::makeForeground() {
    SetForegroundWindow(hwnd_);
    SetFocus(hwnd_);
    return pumpUntil([&] { return GetForegroundWindow() == hwnd_ && GetFocus() == hwnd_; }, 3000);
}

void Recorder::onNextYield(std::function<void()> handler) {
    handler_ = std::move(handler);
    PostMessageA(hwnd_, kRunHandler, 0, 0);
}

namespace {

// Whether lParam points at a 32-bit zero. The memory is asked about before it is read:
// a read that faults is not something to catch (under emulation a fault may not even be
// reported as an access violation).
bool pointsAtZero(LPARAM lp) {
    if (lp == 0) return false;
    const auto* p = reinterpret_cast<const BYTE*>(lp);
    MEMORY_BASIC_INFORMATION mbi{};
    if (VirtualQuery(p, &mbi, sizeof mbi) != sizeof mbi || mbi.State != MEM_COMMIT) return false;
    const DWORD readable = PAGE_READONLY | PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READ |
                           PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
    if (!(mbi.Protect & readable) || (mbi.Protect & PAGE_GUARD)) return false;
    if (p + sizeof(LONG) > static_cast<const BYTE*>(mbi.BaseAddress) + mbi.RegionSize) return false;
    return *reinterpret_cast<const LONG*>(p) == 0;
}

}  // namespace

LRESULT CALLBACK Recorder::proc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
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
    case WM_CHAR:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONUP:
    case WM_USER + 1: {
        bool zero = false;
        if (msg == WM_CLOSE || msg == WM_SYSCOMMAND || msg == WM_USER + 1) {
            zero = pointsAtZero(lp);
        }
        self->messages.push_back(Message{msg, wp, lp, zero});
        return msg == WM_USER + 1 ? 77 : 0;  // WM_CLOSE and WM_SYSCOMMAND do not close it
    }
    }
    return DefWindowProcA(hwnd, msg, wp, lp);
}

}  // namespace vxtest
