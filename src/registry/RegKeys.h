#pragma once
// cRegKeys: an ordered list of cRegKey objects, by position (from 1) or by KeyName
// (compared without regard to case). Item is the default member.
#include "Vx_Main.h"
#include "core/collections/KeyedCollection.h"
#include "core/dispatch/DispatchObject.h"

namespace vx {

class RegKeys : public DispatchObject<RegKeys, _cRegKeys> {
public:
    static const CLSID& classId() noexcept { return CLSID_cRegKeys; }

    HRESULT STDMETHODCALLTYPE Add(Reg_Type HKey, BSTR SubKey, BSTR KeyName, LONG CountKey, _cRegKey** result) override;
    HRESULT STDMETHODCALLTYPE Item(VARIANT* Index, _cRegKey** result) override;
    HRESULT STDMETHODCALLTYPE Remove(VARIANT* Index) override;
    HRESULT STDMETHODCALLTYPE get_Count(LONG* count) override;
    HRESULT STDMETHODCALLTYPE Clear() override;

private:
    KeyedCollection<ComPtr<_cRegKey>> keys_;
};

}  // namespace vx
