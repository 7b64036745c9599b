#pragma once
// cRegKeys: an ordered list of cRegKey objects, by position (from 1) or by KeyName
// (compared without regard to case). Item is the default member.
#include "Vx_Main.h"
#include "core/collections/KeyedListObject.h"

namespace vx {

class RegKeys : public KeyedListObject<RegKeys, _cRegKeys, _cRegKey> {
public:
    static const CLSID& classId() noexcept { return CLSID_cRegKeys; }

    HRESULT STDMETHODCALLTYPE Add(Reg_Type HKey, BSTR SubKey, BSTR KeyName, LONG CountKey, _cRegKey** result) override;
};

}  // namespace vx
