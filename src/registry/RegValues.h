#pragma once
// cRegValues: an ordered list of cRegValue objects, by position (from 1) or by KeyName
// (compared without regard to case). Item is the default member.
#include "Vx_Main.h"
#include "core/collections/KeyedListObject.h"

namespace vx {

class RegValues : public KeyedListObject<RegValues, _cRegValues, _cRegValue> {
public:
    static const CLSID& classId() noexcept { return CLSID_cRegValues; }

    HRESULT STDMETHODCALLTYPE Add(Reg_Type HKey, BSTR SubKey, BSTR KeyName, LONG Datatype, VARIANT DataValue,
                                  _cRegValue** result) override;
};

}  // namespace vx
