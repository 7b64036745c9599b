#include "core/collections/ListCollection.h"

#include "core/collections/DataCollection.h"

namespace vx {

HRESULT ListCollection::Add(VARIANT SetValueA, BSTR sKey, VARIANT SetValueB, VARIANT SetValueC, VARIANT SetValueD,
                            VARIANT SetValueE, VARIANT SetValueF, VARIANT SetValueG, VARIANT SetValueK,
                            VARIANT SetValueH, _Ds_DataCollection** record) {
    if (!record) return E_POINTER;
    *record = nullptr;
    return guard([&] {
        const std::wstring key(viewOf(sKey));
        ComPtr<_Ds_DataCollection> result;
        const bool added = tryStatement([&] {
            auto rec = DataCollection::create();
            rec->setKey(key);
            rec->letValue(DataCollection::A, SetValueA);
            rec->letValue(DataCollection::B, SetValueB);
            rec->letValue(DataCollection::C, SetValueC);
            rec->letValue(DataCollection::D, SetValueD);
            rec->letValue(DataCollection::E, SetValueE);
            rec->letValue(DataCollection::F, SetValueF);
            rec->letValue(DataCollection::G, SetValueG);
            rec->letValue(DataCollection::K, SetValueK);
            rec->letValue(DataCollection::H, SetValueH);
            result = ComPtr<_Ds_DataCollection>(rec.get());
            if (key.empty())
                records_.add(result);
            else
                records_.add(result, key);
        });
        // A failed Add (most often a key already in use) hands back the record stored
        // under the key, unchanged; when there is none, that lookup's error is the result.
        if (!added) result = records_.find(key);
        *record = result.detach();
    });
}

HRESULT ListCollection::Item(VARIANT* Index, _Ds_DataCollection** record) {
    if (!Index || !record) return E_POINTER;
    *record = nullptr;
    return guard([&] { *record = ComPtr<_Ds_DataCollection>(records_.item(*Index)).detach(); });
}

HRESULT ListCollection::Remove(VARIANT* Index) {
    if (!Index) return E_POINTER;
    return guard([&] { records_.remove(*Index); });
}

HRESULT ListCollection::get_Count(LONG* count) {
    if (!count) return E_POINTER;
    *count = records_.count();
    return S_OK;
}

HRESULT ListCollection::Clear() {
    return guard([&] { records_.clear(); });
}

}  // namespace vx
