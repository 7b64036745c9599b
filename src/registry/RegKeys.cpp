#include "registry/RegKeys.h"

#include "core/runtime/Errors.h"
#include "registry/RegKey.h"

namespace vx {

HRESULT RegKeys::Add(Reg_Type HKey, BSTR SubKey, BSTR KeyName, LONG CountKey, _cRegKey** result) {
    if (!result) return E_POINTER;
    *result = nullptr;
    return guard([&] {
        ComPtr<_cRegKey> key(RegKey::create().get());
        check(key->put_HKey(HKey));
        check(key->put_SubKey(SubKey));
        check(key->put_KeyName(KeyName));
        check(key->put_CountKey(CountKey));
        // The name is the key, "" included; a name already present is error 457.
        keys_.add(key, viewOf(KeyName));
        *result = key.detach();
    });
}

HRESULT RegKeys::Item(VARIANT* Index, _cRegKey** result) {
    if (!Index || !result) return E_POINTER;
    *result = nullptr;
    return guard([&] { *result = ComPtr<_cRegKey>(keys_.item(*Index)).detach(); });
}

HRESULT RegKeys::Remove(VARIANT* Index) {
    if (!Index) return E_POINTER;
    return guard([&] { keys_.remove(*Index); });
}

HRESULT RegKeys::get_Count(LONG* count) {
    if (!count) return E_POINTER;
    *count = keys_.count();
    return S_OK;
}

HRESULT RegKeys::Clear() {
    return guard([&] { keys_.clear(); });
}

}  // namespace vx
