#include "registry/RegEnumKey.h"

namespace vx {

HRESULT RegEnumKeyList::Add(_cRegKeys** MyListKey, BSTR SubKey) {
    if (!MyListKey) return E_POINTER;
    return guard([&] { lists_.add(ComPtr<_cRegKeys>(*MyListKey), viewOf(SubKey)); });
}

HRESULT RegEnumKeyList::Item(VARIANT* Index, _cRegKeys** result) {
    if (!Index || !result) return E_POINTER;
    *result = nullptr;
    return guard([&] { *result = ComPtr<_cRegKeys>(lists_.item(*Index)).detach(); });
}

HRESULT RegEnumKeyList::Remove(VARIANT* Index) {
    if (!Index) return E_POINTER;
    return guard([&] { lists_.remove(*Index); });
}

HRESULT RegEnumKeyList::get_Count(LONG* count) {
    if (!count) return E_POINTER;
    *count = lists_.count();
    return S_OK;
}

HRESULT RegEnumKeyList::Clear() {
    return guard([&] { lists_.clear(); });
}

}  // namespace vx
