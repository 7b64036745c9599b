#pragma once
// Ds_SystemProcess: ending the session (through the session service), the amount of
// physical memory, and ending processes by name through WMI (through the binding
// service, core/runtime/Services.h).
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"

#include <string>
#include <string_view>

namespace vx {

class SystemProcess : public DispatchObject<SystemProcess, _Ds_SystemProcess> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_SystemProcess; }

    HRESULT STDMETHODCALLTYPE ShutDownSystem(Flag_ShutDown GoShutDown, VARIANT_BOOL YesAllCoseSystem) override;
    HRESULT STDMETHODCALLTYPE GetMemorySystem(VARIANT* dwTotalGB, VARIANT* dwTotalMB, VARIANT* dwTotalKB) override;
    HRESULT STDMETHODCALLTYPE KillProcess(BSTR KillName, VARIANT RemoveServer) override;

    // The WMI query KillProcess runs for one image name, or "" for a name that could
    // reach beyond its quotes (one holding a quote, a backslash or a NUL: no image name
    // does), which is never asked.
    static std::wstring processQuery(std::wstring_view imageName);
};

}  // namespace vx
