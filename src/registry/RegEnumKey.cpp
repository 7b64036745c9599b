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
    return guard([&] { items_.add(keysList(*MyListKey), viewOf(SubKey)); });
}

}  // namespace vx
