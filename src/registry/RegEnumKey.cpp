#include "registry/RegEnumKey.h"

namespace vx {

HRESULT RegEnumKeyList::Add(_cRegKeys** MyListKey, BSTR SubKey) {
    return guard([&] { items_.add(givenList<_cRegKeys>(required(MyListKey)), viewOf(SubKey)); });
}

}  // namespace vx
