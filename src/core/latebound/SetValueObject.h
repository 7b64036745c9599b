#pragma once
// Ds_SetValueObject: reads, writes or calls a member of any automation object whose name
// is known only as text at run time (typically a control on a form), converting the value
// to the type the member holds, following dotted paths, and trying the control's inner
// Object before the control itself. GetValueData never raises; it keeps what failed last
// for ShowErrorCallByName.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"

#include <string>

namespace vx {

// The name of a value's type as the runtime's TypeName gives it: "Long", "String",
// "Variant()", "Nothing", or an object's class name ("StdFont", "Dictionary"; "Object"
// when the object does not say).
std::wstring typeName(const VARIANT& value);

class SetValueObject : public DispatchObject<SetValueObject, _Ds_SetValueObject> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_SetValueObject; }

    // The most elements of an Args array that are passed as separate arguments; a longer
    // array fails the access with error 450 and calls nothing.
    static constexpr long kMostArguments = 16;

    HRESULT STDMETHODCALLTYPE ShowErrorCallByName() override;
    HRESULT STDMETHODCALLTYPE GetValueData(IDispatch** ObjectControls, BSTR ProcName, LONG* CallType, VARIANT* Args,
                                           VARIANT* GetResultValue, VARIANT* result) override;

private:
    // What the last failed GetValueData left: the object's Name, the member text, and the
    // error (number 0 and no text once a later call succeeded, as the error state is then).
    std::wstring controlName_;
    std::wstring featureName_;
    long errorNumber_ = 0;
    std::wstring errorDescription_;
};

}  // namespace vx
