#pragma once
// cRegEnumKey: an ordered list of cRegKeys lists, each under the path it was made for.
// Add stores the list object it is given, not a copy. (The platform headers take the
// name RegEnumKey for a macro, hence the C++ name.)
#include "Vx_Main.h"
#include "core/collections/KeyedListObject.h"
#include "core/runtime/Errors.h"

namespace vx {

// A list a host hands to the registry collections: the object asked as the list type
// (Nothing stays Nothing); an object of another kind is error 13.
template <class List>
ComPtr<List> givenList(IUnknown* given) {
    ComPtr<List> list;
    if (given && FAILED(given->QueryInterface(__uuidof(List), reinterpret_cast<void**>(list.put()))))
        raise(err::TypeMismatch);
    return list;
}

class RegEnumKeyList : public KeyedListObject<RegEnumKeyList, _cRegEnumKey, _cRegKeys> {
public:
    static const CLSID& classId() noexcept { return CLSID_cRegEnumKey; }

    HRESULT STDMETHODCALLTYPE Add(_cRegKeys** MyListKey, BSTR SubKey) override;
};

}  // namespace vx
