#include "registry/RegEnumKey.h"

namespace vx {

HRESULT RegEnumKeyList::Add(_cRegKeys** MyListKey, BSTR SubKey) {
    if (!MyListKey) return E_POINTER;
    return guard([&] { items_.add(givenList<_cRegKeys>(*MyListKey), viewOf(SubKey)); });
}

}  // namespace vx
