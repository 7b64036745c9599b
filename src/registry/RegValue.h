#pragma once
// cRegValue: one registry value (root, path ending in its name, name, data and type).
// Setting a field only stores it.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"
#include "core/runtime/Variant.h"

namespace vx {

class RegValue : public DispatchObject<RegValue, _cRegValue> {
public:
    static const CLSID& classId() noexcept { return CLSID_cRegValue; }

    HRESULT STDMETHODCALLTYPE get_HKey(Reg_Type* value) override;
    HRESULT STDMETHODCALLTYPE put_HKey(Reg_Type value) override;
    HRESULT STDMETHODCALLTYPE get_SubKey(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE put_SubKey(BSTR value) override;
    HRESULT STDMETHODCALLTYPE get_KeyName(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE put_KeyName(BSTR value) override;
    HRESULT STDMETHODCALLTYPE get_DataValue(VARIANT* value) override;
    HRESULT STDMETHODCALLTYPE put_DataValue(VARIANT value) override;
    HRESULT STDMETHODCALLTYPE putref_DataValue(VARIANT value) override;
    HRESULT STDMETHODCALLTYPE get_Datatype(Reg_Type* value) override;
    HRESULT STDMETHODCALLTYPE put_Datatype(Reg_Type value) override;
    HRESULT STDMETHODCALLTYPE Delete(VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE Rename(BSTR NewName) override;

private:
    LONG hkey_ = 0;
    Bstr subKey_{L""};
    Bstr keyName_{L""};
    Variant dataValue_;
    LONG datatype_ = 0;
};

}  // namespace vx
