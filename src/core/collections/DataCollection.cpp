#include "core/collections/DataCollection.h"

#include "core/collections/ListCollection.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"

namespace vx {

void DataCollection::letValue(Slot slot, const VARIANT& value) { values_[slot] = vx::letValue(value); }

void DataCollection::setKey(std::wstring_view key) { key_ = Bstr(key); }

HRESULT DataCollection::get_sKey(BSTR* value) { return giveText(key_.view(), value); }

HRESULT DataCollection::put_sKey(BSTR value) {
    return guard([&] { setKey(viewOf(value)); });
}

HRESULT DataCollection::getValue(Slot slot, VARIANT* value) {
    return deliver(value, [&] { return values_[slot]; });
}

HRESULT DataCollection::putValue(Slot slot, const VARIANT& value) {
    return guard([&] { letValue(slot, value); });
}

HRESULT DataCollection::putRefValue(Slot slot, const VARIANT& value) {
    return guard([&] {
        // Set stores the object reference itself (Nothing included).
        if (!isObject(value)) raise(err::ObjectRequired);
        values_[slot] = Variant::copyOf(value);
    });
}

_Ds_ListCollection* DataCollection::nestedList() {
    if (!nested_) nested_ = ComPtr<_Ds_ListCollection>(ListCollection::create().get());
    return nested_.get();
}

HRESULT DataCollection::get_AddItem(_Ds_ListCollection** value) {
    return deliver(value, [&] { return ComPtr<_Ds_ListCollection>(nestedList()); });
}

HRESULT DataCollection::putref_AddItem(_Ds_ListCollection* value) {
    return guard([&] { nested_ = ComPtr<_Ds_ListCollection>(value); });
}

HRESULT DataCollection::Count(VARIANT* count) {
    return deliver(count, [&] {
        LONG n = 0;
        check(nestedList()->get_Count(&n));
        return Variant::fromLong(n);
    });
}

}  // namespace vx
