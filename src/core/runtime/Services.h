#pragma once
// The operating-system services several classes reach through seams (see Seams.h): the
// clock, the keyboard state, object binding by name or moniker, ending the session,
// starting processes and shell verbs, and modal message boxes. A subsystem with a service
// of its own (the mixer, the spooler, the network calls) declares it beside its classes.
#include "core/runtime/Seams.h"

#include "core/runtime/Platform.h"

#include <functional>
#include <string>

namespace vx {

// The computer's clock, in Coordinated Universal Time.
struct ClockService {
    std::function<void(SYSTEMTIME*)> getSystemTime = [](SYSTEMTIME* t) { ::GetSystemTime(t); };
    std::function<BOOL(const SYSTEMTIME*)> setSystemTime = [](const SYSTEMTIME* t) { return ::SetSystemTime(t); };
};

// The keyboard: GetAsyncKeyState of a virtual-key code.
struct KeyboardService {
    std::function<SHORT(int)> asyncKeyState = [](int key) { return ::GetAsyncKeyState(key); };
};

// Automation objects by name: CreateObject of a ProgID (or a CLSID written in braces),
// and GetObject of a moniker ("winmgmts:...", "WinNT://..."). Each hands out a new
// reference to the object's IDispatch, or a failure HRESULT.
HRESULT createObjectByName(const std::wstring& progId, IDispatch** object) noexcept;
HRESULT getObjectByMoniker(const std::wstring& moniker, IDispatch** object) noexcept;
struct BindingService {
    std::function<HRESULT(const std::wstring&, IDispatch**)> createObject = &createObjectByName;
    std::function<HRESULT(const std::wstring&, IDispatch**)> getObject = &getObjectByMoniker;
};

// Ending the session: ExitWindowsEx(flags, reason).
struct SessionService {
    std::function<BOOL(UINT, DWORD)> exitWindows = [](UINT flags, DWORD reason) { return ::ExitWindowsEx(flags, reason); };
};

// Starting programs: CreateProcessA of a command line with a window style (the new
// process's identifier, 0 when it did not start), and ShellExecuteA of a verb (owner,
// verb, file, parameters, folder, show command; its result as the system gives it).
DWORD startProcess(const std::string& commandLine, WORD showWindow) noexcept;
struct ProcessService {
    std::function<DWORD(const std::string&, WORD)> createProcess = &startProcess;
    std::function<HINSTANCE(HWND, const char*, const char*, const char*, const char*, int)> shellExecute =
        [](HWND owner, const char* verb, const char* file, const char* parameters, const char* folder, int show) {
            return ::ShellExecuteA(owner, verb, file, parameters, folder, show);
        };
};

// A modal message box: text, title and style in, the button pressed out (MessageBoxW,
// owned by the thread's active window).
struct MessageBoxService {
    std::function<int(const std::wstring&, const std::wstring&, UINT)> show =
        [](const std::wstring& text, const std::wstring& title, UINT style) {
            return ::MessageBoxW(::GetActiveWindow(), text.c_str(), title.c_str(), style);
        };
};

}  // namespace vx
