#pragma once
// Ds_ListCollection: an ordered list of Ds_DataCollection records, by position (from 1)
// or by key (compared without regard to case).
#include "Vx_Main.h"
#include "core/collections/KeyedCollection.h"
#include "core/dispatch/DispatchObject.h"

namespace vx {

class ListCollection : public DispatchObject<ListCollection, _Ds_ListCollection> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_ListCollection; }

    HRESULT STDMETHODCALLTYPE Add(VARIANT SetValueA, BSTR sKey, VARIANT SetValueB, VARIANT SetValueC,
                                  VARIANT SetValueD, VARIANT SetValueE, VARIANT SetValueF, VARIANT SetValueG,
                                  VARIANT SetValueK, VARIANT SetValueH, _Ds_DataCollection** record) override;
    HRESULT STDMETHODCALLTYPE Item(VARIANT* Index, _Ds_DataCollection** record) override;
    HRESULT STDMETHODCALLTYPE Remove(VARIANT* Index) override;
    HRESULT STDMETHODCALLTYPE get_Count(LONG* count) override;
    HRESULT STDMETHODCALLTYPE Clear() override;

private:
    KeyedCollection<ComPtr<_Ds_DataCollection>> records_;
};

}  // namespace vx
