#include "registry/RegEnumValue.h"

#include "registry/RegEnumKey.h"

namespace vx {

HRESULT RegEnumValueList::Add(_cRegKeys* MyListKey, _cRegValues* MyListValue, BSTR SubKey) {
    return guard([&] {
        // One after the other: a name already present fails at the key lists, after the
        // name went in, and leaves the names one longer.
        ComPtr<_cRegKeys> keys = givenList<_cRegKeys>(MyListKey);
        ComPtr<_cRegValues> values = givenList<_cRegValues>(MyListValue);
        names_.add(Bstr(viewOf(SubKey)));
        keyLists_.add(keys, viewOf(SubKey));
        valueLists_.add(values, viewOf(SubKey));
    });
}

HRESULT RegEnumValueList::Item(VARIANT* Index, BSTR* result) {
    if (!Index || !result) return E_POINTER;
    *result = nullptr;
    return guard([&] { *result = Bstr(names_.item(*Index)).detach(); });
}

HRESULT RegEnumValueList::ItemKey(VARIANT* Index, _cRegKeys** result) {
    if (!Index || !result) return E_POINTER;
    *result = nullptr;
    return guard([&] { *result = ComPtr<_cRegKeys>(keyLists_.item(*Index)).detach(); });
}

HRESULT RegEnumValueList::ItemValue(VARIANT* Index, _cRegValues** result) {
    if (!Index || !result) return E_POINTER;
    *result = nullptr;
    return guard([&] { *result = ComPtr<_cRegValues>(valueLists_.item(*Index)).detach(); });
}

HRESULT RegEnumValueList::Remove(VARIANT* Index) {
    if (!Index) return E_POINTER;
    return guard([&] { keyLists_.remove(*Index); });
}

HRESULT RegEnumValueList::get_Count(LONG* count) {
    if (!count) return E_POINTER;
    *count = keyLists_.count();
    return S_OK;
}

HRESULT RegEnumValueList::Clear() {
    return guard([&] {
        names_.clear();
        keyLists_.clear();
        valueLists_.clear();
    });
}

}  // namespace vx
