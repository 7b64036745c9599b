#include "registry/RegValues.h"

#include "core/runtime/Errors.h"
#include "registry/RegValue.h"

namespace vx {

HRESULT RegValues::Add(Reg_Type HKey, BSTR SubKey, BSTR KeyName, LONG Datatype, VARIANT DataValue,
                       _cRegValue** result) {
    return deliver(result, [&] {
        ComPtr<_cRegValue> value(RegValue::create().get());
        check(value->put_HKey(HKey));
        check(value->put_SubKey(SubKey));
        check(value->put_KeyName(KeyName));
        check(value->put_Datatype(Datatype));
        check(value->put_DataValue(DataValue));
        // The name is the key, "" (a key's default value) included; a name already
        // present is error 457.
        items_.add(value, viewOf(KeyName));
        return value;
    });
}

}  // namespace vx
