#include "TestSupport.h"

#include "core/runtime/Convert.h"
#include "core/server/Roster.h"

namespace vxtest {

vx::ComPtr<IDispatch> createObject(REFCLSID clsid) {
    const vx::ClassEntry* entry = vx::findClass(clsid);
    vx::ComPtr<IDispatch> object;
    if (entry) entry->create(IID_IDispatch, reinterpret_cast<void**>(object.put()));
    return object;
}

int errorNumberOf(HRESULT hr) {
    if (SUCCEEDED(hr)) return 0;
    if (HRESULT_FACILITY(hr) == FACILITY_CONTROL) return HRESULT_CODE(hr);
    // The errors a host reports for what IDispatch refuses before the member runs.
    switch (hr) {
    case DISP_E_BADPARAMCOUNT: return 450;
    case DISP_E_TYPEMISMATCH: return 13;
    case DISP_E_OVERFLOW: return 6;
    case DISP_E_PARAMNOTOPTIONAL: return 449;
    case DISP_E_PARAMNOTFOUND: return 448;
    case DISP_E_MEMBERNOTFOUND:
    case DISP_E_UNKNOWNNAME: return 438;
    default: return static_cast<int>(hr);
    }
}

int CallResult::errorNumber() const {
    if (SUCCEEDED(hr)) return 0;
    if (hr == DISP_E_EXCEPTION) return errorNumberOf(scode);
    return errorNumberOf(hr);
}

vx::Variant byRef(vx::Variant& variable) {
    vx::Variant r;
    V_VT(r.get()) = VT_BYREF | VT_VARIANT;
    V_VARIANTREF(r.get()) = variable.get();
    return r;
}

CallResult call(IDispatch* object, const wchar_t* name, std::vector<vx::Variant> args, WORD flags) {
    CallResult r;
    std::wstring n(name);
    LPOLESTR names[1] = {&n[0]};
    DISPID id = 0;
    r.hr = object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(r.hr)) return r;
    // The arguments go to the call, last first. They are the call's own: a callee may
    // coerce an argument in place (Wine's type-library dispatch writes an [in, out]
    // parameter back into a by-value argument), freeing what it held.
    std::vector<VARIANT> reversed(args.size());
    for (size_t i = 0; i < args.size(); ++i) args[i].detachTo(&reversed[args.size() - 1 - i]);
    struct Clear {
        std::vector<VARIANT>& v;
        ~Clear() { for (VARIANT& x : v) VariantClear(&x); }
    } clear{reversed};
    DISPID putId = DISPID_PROPERTYPUT;
    DISPPARAMS params{reversed.empty() ? nullptr : reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
        params.rgdispidNamedArgs = &putId;
        params.cNamedArgs = 1;
    }
    EXCEPINFO ei{};
    UINT argErr = 0;
    r.hr = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, r.value.put(), &ei, &argErr);
    if (r.hr == DISP_E_EXCEPTION) {
        r.scode = ei.scode;
        if (ei.bstrDescription) r.description = ei.bstrDescription;
    }
    SysFreeString(ei.bstrDescription);
    SysFreeString(ei.bstrSource);
    SysFreeString(ei.bstrHelpFile);
    return r;
}

CallResult get(IDispatch* object, const wchar_t* name, std::vector<vx::Variant> args) {
    return call(object, name, std::move(args), DISPATCH_PROPERTYGET);
}

CallResult put(IDispatch* object, const wchar_t* name, const vx::Variant& value) {
    return call(object, name, {value}, DISPATCH_PROPERTYPUT);
}

CallResult putRef(IDispatch* object, const wchar_t* name, const vx::Variant& value) {
    return call(object, name, {value}, DISPATCH_PROPERTYPUTREF);
}

vx::ComPtr<IDispatch> objectOf(const vx::Variant& v) { return vx::ComPtr<IDispatch>(vx::dispatchOf(*v)); }

std::wstring textOf(const vx::Variant& v) { return vx::toText(*v); }
long longOf(const vx::Variant& v) { return vx::toInt32(*v); }

}  // namespace vxtest
