#pragma once
// What the window tests share: the fixture program with its known windows, a window of
// the test's own that records what reaches it, and bounded waiting.
#include "core/runtime/ComPtr.h"
#include "core/runtime/Platform.h"
#include "Vx_Main.h"

#include <functional>
#include <string>
#include <vector>

namespace vxtest {

// Pumps this thread's messages until done() holds, at most about limitMs; true when it held.
bool pumpUntil(const std::function<bool()>& done, int limitMs = 10000);
void pumpFor(int ms);

// The fixture program (tests/fixtures/WindowFixture.cpp), started for one test and
// ended with it, whatever happens. Its windows:
//   "Vx Fixture Main" (class VxFixtureMain): Edit 1001 "Hello", Edit 1006 "World",
//   Button 1002 "OK", check box 1003 "Remember", options 1004 "Option A" and
//   1005 "Option B", Static 1007 "ready" (a click on OK writes "clicked N" there);
//   "Vx Fixture Dialog" (#32770, owned by the main window): Button 2001 "Close",
//   Static 2002 "Dialog text".
class FixtureProgram {
public:
    FixtureProgram();
    ~FixtureProgram();
    FixtureProgram(const FixtureProgram&) = delete;
    FixtureProgram& operator=(const FixtureProgram&) = delete;

    HWND main() const { return main_; }
    HWND dialog() const { return dialog_; }
    HWND control(int id) const { return GetDlgItem(main_, id); }
    bool running() const;
    // Waits (bounded) for the program to end by itself.
    bool waitForExit(int limitMs = 10000) const;

private:
    PROCESS_INFORMATION process_{};
    HWND main_ = nullptr;
    HWND dialog_ = nullptr;
};

// A top-level window of the test's own thread that records the messages that reach it.
class Recorder {
public:
    struct Message {
        UINT msg;
        WPARAM wParam;
        LPARAM lParam;
        bool zeroAtLParam;  // lParam pointed at a 32-bit zero when the message arrived
    };
    explicit Recorder(const char* title = "Vx Recorder", int x = 300, int y = 300, int w = 300, int h = 200);
    ~Recorder();
    HWND hwnd() const { return hwnd_; }
    LONG handle() const { return static_cast<LONG>(reinterpret_cast<LONG_PTR>(hwnd_)); }
    // The messages recorded (of the kinds the recorder watches), oldest first.
    std::vector<Message> messages;
    // Makes it the foreground window with the keyboard focus (bounded wait).
    bool makeForeground();
    // Runs during the next yield, from a posted message: a host event handler.
    void onNextYield(std::function<void()> handler);

private:
    static LRESULT CALLBACK proc(HWND, UINT, WPARAM, LPARAM);
    HWND hwnd_ = nullptr;
    std::function<void()> handler_;
};

LONG handleOf(HWND hwnd);
HWND hwndOf(LONG handle);

// The window object's handle, and a new window object for a handle.
LONG handleOf(_Ds_ENumAction* window);
vx::ComPtr<_Ds_EnumChid> newFinder();
vx::ComPtr<_Ds_ENumAction> newWindow(HWND hwnd);

}  // namespace vxtest
