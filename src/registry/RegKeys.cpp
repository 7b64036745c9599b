#include "registry/RegKeys.h"

#include "core/runtime/Errors.h"
#include "registry/RegKey.h"

namespace vx {

HRESULT RegKeys::Add(Reg_Type HKey, BSTR SubKey, BSTR KeyName, LONG CountKey, _cRegKey** result) {
    return deliver(result, [&] {
        ComPtr<_cRegKey> key(RegKey::create().get());
        check(key->put_HKey(HKey));
        check(key->put_SubKey(SubKey));
        check(key->put_KeyName(KeyName));
        check(key->put_CountKey(CountKey));
        // The name is the key, "" included; a name already present is error 457.
        items_.add(key, viewOf(KeyName));
        return key;
    });
}

}  // namespace vx
