#include "registry/RegValue.h"

#include "core/runtime/Errors.h"
#include "core/runtime/Convert.h"
#include "registry/Reg.h"

namespace vx {

HRESULT RegValue::get_HKey(Reg_Type* value) { return giveField(hkey_, value); }

HRESULT RegValue::put_HKey(Reg_Type value) {
    hkey_ = value;
    return S_OK;
}

HRESULT RegValue::get_SubKey(BSTR* value) { return giveText(subKey_.view(), value); }

HRESULT RegValue::put_SubKey(BSTR value) { return takeText(subKey_, value); }

HRESULT RegValue::get_KeyName(BSTR* value) { return giveText(keyName_.view(), value); }

HRESULT RegValue::put_KeyName(BSTR value) { return takeText(keyName_, value); }

HRESULT RegValue::get_DataValue(VARIANT* value) {
    return deliver(value, [&] { return dataValue_; });
}

HRESULT RegValue::put_DataValue(VARIANT value) {
    return guard([&] { dataValue_ = letValue(value); });
}

HRESULT RegValue::putref_DataValue(VARIANT value) {
    return guard([&] {
        // Set stores the object reference itself (Nothing included).
        if (!isObject(value)) raise(err::ObjectRequired);
        dataValue_ = Variant::copyOf(value);
    });
}

HRESULT RegValue::get_Datatype(Reg_Type* value) { return giveField(datatype_, value); }

HRESULT RegValue::put_Datatype(Reg_Type value) {
    datatype_ = value;
    return S_OK;
}

HRESULT RegValue::Delete(VARIANT_BOOL* result) {
    return deliver(result, [&] { return registry::valueDelete(hkey_, subKey_.view()); });
}

// Renaming is not supported: the name is accepted and the value keeps its own.
HRESULT RegValue::Rename(BSTR) { return S_OK; }

}  // namespace vx
