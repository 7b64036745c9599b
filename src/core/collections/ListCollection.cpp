#include "core/collections/ListCollection.h"

#include "core/collections/DataCollection.h"

namespace vx {

HRESULT ListCollection::Add(VARIANT SetValueA, BSTR sKey, VARIANT SetValueB, VARIANT SetValueC, VARIANT SetValueD,
                            VARIANT SetValueE, VARIANT SetValueF, VARIANT SetValueG, VARIANT SetValueK,
                            VARIANT SetValueH, _Ds_DataCollection** record) {
    return deliver(record, [&] {
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
                items_.add(result);
            else
                items_.add(result, key);
        });
        // A failed Add (most often a key already in use) hands back the record stored
        // under the key, unchanged; when there is none, that lookup's error is the result.
        if (!added) result = items_.find(key);
        return result;
    });
}

}  // namespace vx
