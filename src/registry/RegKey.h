#pragma once
// cRegKey: one registry key (root, path, name, and its subkey count when it was listed)
// with a few operations on that place. Setting a field only stores it.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"
#include "core/runtime/Variant.h"

namespace vx {

class RegKey : public DispatchObject<RegKey, _cRegKey> {
public:
    static const CLSID& classId() noexcept { return CLSID_cRegKey; }

    HRESULT STDMETHODCALLTYPE get_HKey(Reg_Type* value) override;
    HRESULT STDMETHODCALLTYPE put_HKey(Reg_Type value) override;
    HRESULT STDMETHODCALLTYPE get_CountKey(LONG* value) override;
    HRESULT STDMETHODCALLTYPE put_CountKey(LONG value) override;
    HRESULT STDMETHODCALLTYPE get_SubKey(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE put_SubKey(BSTR value) override;
    HRESULT STDMETHODCALLTYPE get_KeyName(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE put_KeyName(BSTR value) override;
    HRESULT STDMETHODCALLTYPE Delete() override;
    HRESULT STDMETHODCALLTYPE Rename(BSTR NewName) override;
    HRESULT STDMETHODCALLTYPE IsHasKey(BSTR AddKey, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE ParentKey(_cRegKeys** result) override;
    HRESULT STDMETHODCALLTYPE EnumKey(BSTR AddKey, _cRegKeys** result) override;
    HRESULT STDMETHODCALLTYPE SubValueEnum(BSTR AddKey, _cRegValues** result) override;

private:
    // Appends a backslash to SubKey when addKey is not empty, and returns the path to list.
    std::wstring childPath(BSTR addKey);

    LONG hkey_ = 0;
    LONG countKey_ = 0;
    Bstr subKey_{L""};
    Bstr keyName_{L""};
};

}  // namespace vx
