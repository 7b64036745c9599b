#pragma once
// Ds_MyVaribleFunction: the library's toolbox of string, array and key helpers. The work
// is done by the plain functions of shared/Helpers.h and shared/Waits.h, which other
// classes call too.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"

namespace vx {

class MyVaribleFunction : public DispatchObject<MyVaribleFunction, _Ds_MyVaribleFunction> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_MyVaribleFunction; }

    HRESULT STDMETHODCALLTYPE GetVar(VARIANT* sData, VARIANT* nIndex, VARIANT* sFind, Flag_PathClip* GoGetSplit,
                                     VARIANT* EndIndexLast, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE IsEqute(VARIANT* ValueA, VARIANT* ValueB, Type_IsEquate* GoTypeCheck,
                                      VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE CountUBound(VARIANT* MyArr, short* result) override;
    HRESULT STDMETHODCALLTYPE GoIsNull(VARIANT* MyDataVlaueNull, VARIANT ValueNull, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE IsKey(short GetAsc, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE DoWaitFindTitle(BSTR TitleName) override;
    HRESULT STDMETHODCALLTYPE DoWaitNumber(LONG Number) override;
};

}  // namespace vx
