#include "registry/RegEnumKey.h"

#include "core/runtime/Errors.h"

namespace vx {

// The list a host handed in, as a cRegKeys (Nothing stays Nothing); any other object is a
// type mismatch.
ComPtr<_cRegKeys> keysList(IUnknown* given) {
    ComPtr<_cRegKeys> list;
    if (given && FAILED(given->QueryInterface(IID__cRegKeys, reinterpret_cast<void**>(list.put()))))
        raise(err::TypeMismatch);
    return list;
}

ComPtr<_cRegValues> valuesList(IUnknown* given) {
    ComPtr<_cRegValues> list;
    if (given && FAILED(given->QueryInterface(IID__cRegValues, reinterpret_cast<void**>(list.put()))))
        raise(err::TypeMismatch);
    return list;
}

HRESULT RegEnumKeyList::Add(_cRegKeys** MyListKey, BSTR SubKey) {
    if (!MyListKey) return E_POINTER;
    return guard([&] { lists_.add(keysList(*MyListKey), viewOf(SubKey)); });
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
