#include "desktop/RunShell.h"

#include "Vx_MainEnums.h"
#include "core/runtime/Ansi.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/Services.h"
#include "core/runtime/Text.h"
#include "shared/Waits.h"

#include <string>

namespace vx {

namespace {

// The command line of every control-panel item and shell dialog RunShellDLL opens.
struct ShellRunLine {
    LONG flag;
    const wchar_t* commandLine;
};
constexpr ShellRunLine kShellRunLines[] = {
    {ShellCNRunDLL, L"rundll32.exe shell32.dll,Control_RunDLL"},
    {ShellCNRunDLL_Joy, L"rundll32.exe shell32.dll,Control_RunDLL joy.cpl"},
    {ShellCNRunDLL_Ups, L"rundll32.exe shell32.dll,Control_RunDLL ups.cpl"},
    {ShellCNRunDLL_Intl, L"rundll32.exe shell32.dll,Control_RunDLL intl.cpl"},
    {ShellCNRunDLL_Desk, L"rundll32.exe shell32.dll,Control_RunDLL desk.cpl"},
    {ShellCNRunDLL_MainALL, L"rundll32.exe shell32.dll,Control_RunDLL main.cpl"},
    {ShellCNRunDLL_Ports, L"rundll32.exe shell32.dll,Control_RunDLL ports.cpl"},
    {ShellCNRunDLL_Ncpa, L"rundll32.exe shell32.dll,Control_RunDLL ncpa.cpl"},
    {ShellCNRunDLL_mmsys, L"rundll32.exe shell32.dll,Control_RunDLL mmsys.cpl"},
    {ShellCNRunDLL_Access, L"rundll32.exe shell32.dll,Control_RunDLL access.cpl"},
    {ShellCNRunDLL_System, L"rundll32.exe shell32.dll,Control_RunDLL sysdm.cpl"},
    {ShellCNRunDLL_Appwiz, L"rundll32.exe shell32.dll,Control_RunDLL appwiz.cpl"},
    {ShellCNRunDLL_Srvmgr, L"rundll32.exe shell32.dll,Control_RunDLL srvmgr.cpl"},
    {ShellCNRunDLL_Netcpl, L"rundll32.exe shell32.dll,Control_RunDLL netcpl.cpl"},
    {ShellCNRunDLL_Themes, L"rundll32.exe shell32.dll,Control_RunDLL themes.cpl"},
    {ShellCNRunDLL_Inetcpl, L"rundll32.exe shell32.dll,Control_RunDLL inetcpl.cpl"},
    {ShellCNRunDLL_Tweakui, L"rundll32.exe shell32.dll,Control_RunDLL tweakui.cpl"},
    {ShellCNRunDLL_Mlcfg32, L"rundll32.exe shell32.dll,Control_RunDLL mlcfg32.cpl"},
    {ShellCNRunDLL_Wgpocpl, L"rundll32.exe shell32.dll,Control_RunDLL wgpocpl.cpl"},
    {ShellCNRunDLL_Odbccp32, L"rundll32.exe shell32.dll,Control_RunDLL odbccp32.cpl"},
    {ShellCNRunDLL_Password, L"rundll32.exe shell32.dll,Control_RunDLL password.cpl"},
    {ShellCNRunDLL_Powercfg, L"rundll32.exe shell32.dll,Control_RunDLL powercfg.cpl"},
    {ShellCNRunDLL_Telephon, L"rundll32.exe shell32.dll,Control_RunDLL telephon.cpl"},
    {ShellCNRunDLL_Modemadd, L"rundll32.exe shell32.dll,Control_RunDLL modem.cpl"},
    {ShellCNRunDLL_Timedate, L"rundll32.exe shell32.dll,Control_RunDLL timedate.cpl"},
    {ShellCNRunDLL_Findfast, L"rundll32.exe shell32.dll,Control_RunDLL findfast.cpl"},
    {ShellSHHelpShortcuts_RunDLL_AddPrinter, L"rundll32.exe shell32.dll,SHHelpShortcuts_RunDLL AddPrinter"},
    {ShellSHHelpShortcuts_RunDLL_FontsFolder, L"rundll32.exe shell32.dll,SHHelpShortcuts_RunDLL FontsFolder"},
};

// The command line that offers the user a program for a file the shell could not open.
constexpr std::wstring_view kOpenWith = L"rundll32.exe shell32.dll,OpenAs_RunDLL ";

// A text argument as an "A" function takes it: null when it is empty.
const char* orNull(const std::string& text) noexcept { return text.empty() ? nullptr : text.c_str(); }

}  // namespace

double Launcher::shell(std::wstring_view commandLine, LONG windowStyle) {
    if (windowStyle < SW_HIDE || windowStyle > SW_FORCEMINIMIZE || commandLine.empty()) raise(err::InvalidCall);
    const DWORD id = service<ProcessService>().createProcess(toAnsi(commandLine), static_cast<WORD>(windowStyle));
    if (id == 0) raise(err::FileNotFound);
    return static_cast<double>(id);
}

std::wstring_view Launcher::shellRunLine(LONG flag) noexcept {
    for (const ShellRunLine& row : kShellRunLines)
        if (row.flag == flag) return row.commandLine;
    return {};
}

HRESULT Launcher::ShellVB(BSTR PathNameShell, LONG winStyle, double* result) {
    return deliver(result, [&] { return shell(viewOf(PathNameShell), winStyle); });
}

HRESULT Launcher::RunShell(BSTR ExecuteName, BSTR sTopic, BSTR sParams, BSTR sDirectory, Flag_ShowPostion nShowCmd,
                           VARIANT_BOOL RunOpenAs, VARIANT WaitFindTitle, VARIANT* result) {
    return deliver(result, [&] {
        const HWND owner = GetDesktopWindow();
        yieldTimes(4);
        const std::wstring_view name = viewOf(ExecuteName);
        Variant started;
        if (lower(left(name, 8)) != L"rundll32") {
            const std::string file = toAnsi(name), verb = toAnsi(viewOf(sTopic)), parameters = toAnsi(viewOf(sParams)),
                              folder = toAnsi(viewOf(sDirectory));
            const HINSTANCE code = service<ProcessService>().shellExecute(owner, orNull(verb), file.c_str(),
                                                                         orNull(parameters), orNull(folder), nShowCmd);
            // The shell's result is a small number that only looks like a handle.
            const LONG shellResult = static_cast<LONG>(reinterpret_cast<INT_PTR>(code));
            started = Variant::fromLong(shellResult);
            if (shellResult < 32 && RunOpenAs != VARIANT_FALSE)
                shell(std::wstring(kOpenWith) + std::wstring(name), SW_SHOWNORMAL);
        } else {
            started = Variant::fromDouble(shell(name, nShowCmd));
        }
        if (!isMissing(WaitFindTitle)) {
            const Variant tilde = Variant::fromText(L"~");
            waitFindWindows(*Variant::fromText(toText(WaitFindTitle)), *tilde, *tilde);
        }
        return started;
    });
}

HRESULT Launcher::GoShellSplit(BSTR, BSTR, VARIANT* result) {
    return deliver(result, [] { return Variant(); });
}

HRESULT Launcher::RunShellDLL(Flag_ShellRun MyFlag, BSTR MyData, VARIANT* result) {
    return deliver(result, [&] {
        const std::wstring commandLine = std::wstring(shellRunLine(MyFlag)) + std::wstring(viewOf(MyData));
        return Variant::fromDouble(shell(commandLine, SW_SHOWNORMAL));
    });
}

}  // namespace vx
