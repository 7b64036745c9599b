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
    return deliver(result, [&] { return names_.item(required(Index)); });
}

HRESULT RegEnumValueList::ItemKey(VARIANT* Index, _cRegKeys** result) {
    return deliver(result, [&] { return keyLists_.item(required(Index)); });
}

HRESULT RegEnumValueList::ItemValue(VARIANT* Index, _cRegValues** result) {
    return deliver(result, [&] { return valueLists_.item(required(Index)); });
}

HRESULT RegEnumValueList::Remove(VARIANT* Index) {
    return guard([&] { keyLists_.remove(required(Index)); });
}

HRESULT RegEnumValueList::get_Count(LONG* count) {
    return deliver(count, [&] { return keyLists_.count(); });
}

HRESULT RegEnumValueList::Clear() {
    return guard([&] {
        names_.clear();
        keyLists_.clear();
        valueLists_.clear();
    });
}

}  // namespace vx
