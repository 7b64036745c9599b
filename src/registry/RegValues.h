#pragma once
// cRegValues: an ordered list of cRegValue objects, by position (from 1) or by KeyName
// (compared without regard to case). Item is the default member.
#include "Vx_Main.h"
#include "core/collections/KeyedCollection.h"
#include "core/dispatch/DispatchObject.h"

namespace vx {

class RegValues : public DispatchObject<RegValues, _cRegValues> {
public:
    static const CLSID& classId() noexcept { return CLSID_cRegValues; }

    HRESULT STDMETHODCALLTYPE Add(Reg_Type HKey, BSTR SubKey, BSTR KeyName, LONG Datatype, VARIANT DataValue,
                                  _cRegValue** result) override;
    HRESULT STDMETHODCALLTYPE Item(VARIANT* Index, _cRegValue** result) override;
    HRESULT STDMETHODCALLTYPE Remove(VARIANT* Index) override;
    HRESULT STDMETHODCALLTYPE get_Count(LONG* count) override;
    HRESULT STDMETHODCALLTYPE Clear() override;

private:
    KeyedCollection<ComPtr<_cRegValue>> values_;
};

}  // namespace vx
