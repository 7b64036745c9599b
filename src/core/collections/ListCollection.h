#pragma once
// Ds_ListCollection: an ordered list of Ds_DataCollection records, by position (from 1)
// or by key (compared without regard to case).
#include "Vx_Main.h"
#include "core/collections/KeyedListObject.h"

namespace vx {

class ListCollection : public KeyedListObject<ListCollection, _Ds_ListCollection, _Ds_DataCollection> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_ListCollection; }

    HRESULT STDMETHODCALLTYPE Add(VARIANT SetValueA, BSTR sKey, VARIANT SetValueB, VARIANT SetValueC,
                                  VARIANT SetValueD, VARIANT SetValueE, VARIANT SetValueF, VARIANT SetValueG,
                                  VARIANT SetValueK, VARIANT SetValueH, _Ds_DataCollection** record) override;
};

}  // namespace vx
