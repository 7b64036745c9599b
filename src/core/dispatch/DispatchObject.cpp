#include "core/dispatch/DispatchObject.h"

#include "core/runtime/Variant.h"

namespace vx {

HRESULT finishInvoke(HRESULT hr, EXCEPINFO* excepInfo) noexcept {
    if (SUCCEEDED(hr)) return hr;
    const LastError& e = lastError();
    if (FAILED(e.hr) && (hr == e.hr || hr == DISP_E_EXCEPTION)) {
        if (excepInfo) {
            SysFreeString(excepInfo->bstrSource);
            SysFreeString(excepInfo->bstrDescription);
            SysFreeString(excepInfo->bstrHelpFile);
            *excepInfo = EXCEPINFO{};
            excepInfo->scode = e.hr;
            excepInfo->bstrSource = SysAllocString(e.source.c_str());
            excepInfo->bstrDescription = SysAllocString(e.description.c_str());
        }
        return DISP_E_EXCEPTION;
    }
    return hr;
}

}  // namespace vx
