#pragma once
// cRegEnumKey: an ordered list of cRegKeys lists, each under the path it was made for.
// Add stores the list object it is given, not a copy. (The platform headers take the
// name RegEnumKey for a macro, hence the C++ name.)
#include "Vx_Main.h"
#include "core/collections/KeyedListObject.h"

namespace vx {

// The lists a host hands to the registry collections: the object asked as the list type
// (Nothing stays Nothing); an object of another kind is error 13.
ComPtr<_cRegKeys> keysList(IUnknown* given);
ComPtr<_cRegValues> valuesList(IUnknown* given);

class RegEnumKeyList : public KeyedListObject<RegEnumKeyList, _cRegEnumKey, _cRegKeys> {
public:
    static const CLSID& classId() noexcept { return CLSID_cRegEnumKey; }

    HRESULT STDMETHODCALLTYPE Add(_cRegKeys** MyListKey, BSTR SubKey) override;
};

}  // namespace vx
