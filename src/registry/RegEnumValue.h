#pragma once
// cRegEnumValue: three lists side by side, filled together by Add: names (without keys),
// cRegKeys lists and cRegValues lists (both under the name). Remove and Count work on the
// key lists alone, so after a Remove the three are no longer parallel; Clear empties all
// three. (The platform headers take the name RegEnumValue for a macro, hence the C++ name.)
#include "Vx_Main.h"
#include "core/collections/KeyedCollection.h"
#include "core/dispatch/DispatchObject.h"
#include "core/runtime/Variant.h"

namespace vx {

class RegEnumValueList : public DispatchObject<RegEnumValueList, _cRegEnumValue> {
public:
    static const CLSID& classId() noexcept { return CLSID_cRegEnumValue; }

    HRESULT STDMETHODCALLTYPE Add(_cRegKeys* MyListKey, _cRegValues* MyListValue, BSTR SubKey) override;
    HRESULT STDMETHODCALLTYPE Item(VARIANT* Index, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE ItemKey(VARIANT* Index, _cRegKeys** result) override;
    HRESULT STDMETHODCALLTYPE ItemValue(VARIANT* Index, _cRegValues** result) override;
    HRESULT STDMETHODCALLTYPE Remove(VARIANT* Index) override;
    HRESULT STDMETHODCALLTYPE get_Count(LONG* count) override;
    HRESULT STDMETHODCALLTYPE Clear() override;

private:
    KeyedCollection<Bstr> names_;
    KeyedCollection<ComPtr<_cRegKeys>> keyLists_;
    KeyedCollection<ComPtr<_cRegValues>> valueLists_;
};

}  // namespace vx
