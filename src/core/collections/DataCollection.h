#pragma once
// Ds_DataCollection: one record of a Ds_ListCollection: the key it was added under,
// nine values (A to G, then K, then H) and a nested list created on first use, so that
// records form a tree.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"
#include "core/runtime/Variant.h"

namespace vx {

class DataCollection : public DispatchObject<DataCollection, _Ds_DataCollection> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_DataCollection; }

    // The value slots in interface order.
    enum Slot { A, B, C, D, E, F, G, K, H, SlotCount };
    // A Let assignment to a value slot (an object stands for its default value).
    void letValue(Slot slot, const VARIANT& value);
    void setKey(std::wstring_view key);

    HRESULT STDMETHODCALLTYPE get_sKey(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE put_sKey(BSTR value) override;
    HRESULT STDMETHODCALLTYPE get_ValueA(VARIANT* value) override { return getValue(A, value); }
    HRESULT STDMETHODCALLTYPE put_ValueA(VARIANT value) override { return putValue(A, value); }
    HRESULT STDMETHODCALLTYPE putref_ValueA(VARIANT value) override { return putRefValue(A, value); }
    HRESULT STDMETHODCALLTYPE get_ValueB(VARIANT* value) override { return getValue(B, value); }
    HRESULT STDMETHODCALLTYPE put_ValueB(VARIANT value) override { return putValue(B, value); }
    HRESULT STDMETHODCALLTYPE putref_ValueB(VARIANT value) override { return putRefValue(B, value); }
    HRESULT STDMETHODCALLTYPE get_ValueC(VARIANT* value) override { return getValue(C, value); }
    HRESULT STDMETHODCALLTYPE put_ValueC(VARIANT value) override { return putValue(C, value); }
    HRESULT STDMETHODCALLTYPE putref_ValueC(VARIANT value) override { return putRefValue(C, value); }
    HRESULT STDMETHODCALLTYPE get_ValueD(VARIANT* value) override { return getValue(D, value); }
    HRESULT STDMETHODCALLTYPE put_ValueD(VARIANT value) override { return putValue(D, value); }
    HRESULT STDMETHODCALLTYPE putref_ValueD(VARIANT value) override { return putRefValue(D, value); }
    HRESULT STDMETHODCALLTYPE get_ValueE(VARIANT* value) override { return getValue(E, value); }
    HRESULT STDMETHODCALLTYPE put_ValueE(VARIANT value) override { return putValue(E, value); }
    HRESULT STDMETHODCALLTYPE putref_ValueE(VARIANT value) override { return putRefValue(E, value); }
    HRESULT STDMETHODCALLTYPE get_ValueF(VARIANT* value) override { return getValue(F, value); }
    HRESULT STDMETHODCALLTYPE put_ValueF(VARIANT value) override { return putValue(F, value); }
    HRESULT STDMETHODCALLTYPE putref_ValueF(VARIANT value) override { return putRefValue(F, value); }
    HRESULT STDMETHODCALLTYPE get_ValueG(VARIANT* value) override { return getValue(G, value); }
    HRESULT STDMETHODCALLTYPE put_ValueG(VARIANT value) override { return putValue(G, value); }
    HRESULT STDMETHODCALLTYPE putref_ValueG(VARIANT value) override { return putRefValue(G, value); }
    HRESULT STDMETHODCALLTYPE get_ValueK(VARIANT* value) override { return getValue(K, value); }
    HRESULT STDMETHODCALLTYPE put_ValueK(VARIANT value) override { return putValue(K, value); }
    HRESULT STDMETHODCALLTYPE putref_ValueK(VARIANT value) override { return putRefValue(K, value); }
    HRESULT STDMETHODCALLTYPE get_ValueH(VARIANT* value) override { return getValue(H, value); }
    HRESULT STDMETHODCALLTYPE put_ValueH(VARIANT value) override { return putValue(H, value); }
    HRESULT STDMETHODCALLTYPE putref_ValueH(VARIANT value) override { return putRefValue(H, value); }
    HRESULT STDMETHODCALLTYPE get_AddItem(_Ds_ListCollection** value) override;
    HRESULT STDMETHODCALLTYPE putref_AddItem(_Ds_ListCollection* value) override;
    HRESULT STDMETHODCALLTYPE Count(VARIANT* count) override;

private:
    HRESULT getValue(Slot slot, VARIANT* value);
    HRESULT putValue(Slot slot, const VARIANT& value);
    HRESULT putRefValue(Slot slot, const VARIANT& value);
    // The nested list, created when the field holds none.
    _Ds_ListCollection* nestedList();

    Bstr key_{L""};
    Variant values_[SlotCount];
    ComPtr<_Ds_ListCollection> nested_;
};

}  // namespace vx
