#pragma once
// Ds_RunShell: starting programs and documents (a shell verb, or a command line),
// control-panel items and shell dialogs by a named code, and waiting for the started
// program's window. Programs start through the process service (core/runtime/Services.h).
//
// The C++ class is Launcher: a class cannot be named after one of its own members.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"

#include <string_view>

namespace vx {

class Launcher : public DispatchObject<Launcher, _Ds_RunShell> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_RunShell; }

    HRESULT STDMETHODCALLTYPE ShellVB(BSTR PathNameShell, LONG winStyle, double* result) override;
    HRESULT STDMETHODCALLTYPE RunShell(BSTR ExecuteName, BSTR sTopic, BSTR sParams, BSTR sDirectory,
                                       Flag_ShowPostion nShowCmd, VARIANT_BOOL RunOpenAs, VARIANT WaitFindTitle,
                                       VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE GoShellSplit(BSTR MyDataShell, BSTR GoSplit, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE RunShellDLL(Flag_ShellRun MyFlag, BSTR MyData, VARIANT* result) override;

    // Shell: starts a command line as a new process with a show command (0 to 11) and
    // returns its process identifier. An empty command line or another show command is
    // error 5; a command line that starts nothing, error 53.
    static double shell(std::wstring_view commandLine, LONG windowStyle);
    // The command line RunShellDLL starts for a Flag_ShellRun value ("" for a value
    // without one).
    static std::wstring_view shellRunLine(LONG flag) noexcept;
};

}  // namespace vx
