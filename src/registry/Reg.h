#pragma once
// clsReg: the registry by root and path: string, 32-bit and binary values read and
// written, keys created, tested, counted, listed and deleted, values listed and deleted,
// and a small settings store under "HKEY_LOCAL_MACHINE\SOFTWARE\Hollowin\".
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"
#include "core/runtime/ComPtr.h"

#include <string_view>

namespace vx {

namespace registry {

// The members' work, for the key and value objects too. A root of 0 means that the path
// starts with the root's name.
bool valueDelete(long root, std::wstring_view subKey);   // ValueDelete
void keyDelete(long root, std::wstring_view subKey);     // KeyDelete
bool hasKey(long root, std::wstring_view path);          // IsHasKey
ComPtr<_cRegKeys> listKeys(long root, std::wstring_view path);      // ListKeys
ComPtr<_cRegValues> listValues(long root, std::wstring_view path);  // ListValues

}  // namespace registry

class Reg : public DispatchObject<Reg, _clsReg> {
public:
    static const CLSID& classId() noexcept { return CLSID_clsReg; }

    HRESULT STDMETHODCALLTYPE get_RegisterValue(BSTR NameTitle, BSTR* value) override;
    HRESULT STDMETHODCALLTYPE put_RegisterValue(BSTR NameTitle, BSTR NewValue) override;
    HRESULT STDMETHODCALLTYPE GoLngHKey(BSTR MyHKey, LONG* result) override;
    HRESULT STDMETHODCALLTYPE GoStrHKey(Reg_Type MyHKey, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE ValueDelete(BSTR SubKey, HKEY_Type Key, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE CreateKey(HKEY_Type Key, BSTR SubKey, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE IsHasKey(HKEY_Type Key, BSTR SubKey, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE GoRegisterWrite(BSTR SubKey, VARIANT* MyValue, Reg_Type nType, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE GoRegisterRead(BSTR SubKey, Reg_Type nType, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE KeyDelete(BSTR SubKey, HKEY_Type Key) override;
    HRESULT STDMETHODCALLTYPE WriteString(HKEY_Type Key, BSTR SubKey, BSTR sName, BSTR sData, Reg_Type nType,
                                          VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE ReadString(HKEY_Type Key, BSTR SubKey, BSTR sName, BSTR* sDefault, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE WriteDWord(HKEY_Type Key, BSTR SubKey, BSTR sName, LONG lData, Reg_Type nType,
                                         VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE ReadDWord(HKEY_Type Key, BSTR SubKey, BSTR sName, LONG* lDefault, LONG* result) override;
    HRESULT STDMETHODCALLTYPE WriteBinary(HKEY_Type Key, BSTR SubKey, BSTR sName, BSTR ByData, VARIANT* MyDataArr,
                                          Reg_Type nType, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE ReadBinary(HKEY_Type Key, BSTR SubKey, BSTR sName, VARIANT_BOOL* GoGetText,
                                         VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE CountKey(HKEY_Type Key, BSTR SubKey, LONG* result) override;
    HRESULT STDMETHODCALLTYPE GoRegister(CallType Flag, Reg_Type nType, HKEY_Type HKey, BSTR SubKey, BSTR NameTitle,
                                         VARIANT* SetValue, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE ListKeys(HKEY_Type Key, BSTR SubKey, _cRegKeys** result) override;
    HRESULT STDMETHODCALLTYPE ListValues(HKEY_Type Key, BSTR SubKey, _cRegValues** result) override;
    HRESULT STDMETHODCALLTYPE GoEnumKey(HKEY_Type Key, BSTR SubKey, _cRegEnumKey** result) override;
    HRESULT STDMETHODCALLTYPE GoEnumValue(HKEY_Type Key, BSTR SubKey, _cRegEnumValue** result) override;
};

}  // namespace vx
