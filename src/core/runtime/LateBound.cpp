#include "core/runtime/LateBound.h"

#include "core/runtime/Errors.h"
#include "core/runtime/Services.h"

#include <objbase.h>
#include <dispex.h>

#include <algorithm>
#include <string>

namespace vx {

LateBound::LateBound(const VARIANT& v) {
    IDispatch* d = dispatchOf(v);
    if (!d) raise(isObject(v) ? err::ObjectNotSet : err::ObjectRequired);
    object_ = ComPtr<IDispatch>(d);
}

LateBound LateBound::create(std::wstring_view progId) {
    ComPtr<IDispatch> d;
    if (FAILED(service<BindingService>().createObject(std::wstring(progId), d.put())) || !d)
        raise(err::CannotCreateObject);
    LateBound r;
    r.object_ = std::move(d);
    return r;
}

LateBound LateBound::bind(std::wstring_view moniker) {
    ComPtr<IDispatch> d;
    check(service<BindingService>().getObject(std::wstring(moniker), d.put()));
    if (!d) raise(err::CannotCreateObject);
    LateBound r;
    r.object_ = std::move(d);
    return r;
}

Variant LateBound::call(std::wstring_view name, std::vector<Variant> args) const {
    return invoke(name, DISPATCH_METHOD | DISPATCH_PROPERTYGET, args);
}

Variant LateBound::get(std::wstring_view name, std::vector<Variant> args) const {
    return invoke(name, DISPATCH_PROPERTYGET, args);
}

void LateBound::put(std::wstring_view name, const Variant& value) const {
    std::vector<Variant> args{value};
    invoke(name, DISPATCH_PROPERTYPUT, args);
}

void LateBound::putRef(std::wstring_view name, const Variant& value) const {
    std::vector<Variant> args{value};
    invoke(name, DISPATCH_PROPERTYPUTREF, args);
}

void LateBound::forEach(const std::function<void(const VARIANT&)>& f) const {
    std::vector<Variant> none;
    const Variant got = invoke(object_.get(), DISPID_NEWENUM, DISPATCH_METHOD | DISPATCH_PROPERTYGET, none);
    const VARIANT& v = deref(*got);
    IUnknown* unknown = V_VT(&v) == VT_UNKNOWN ? V_UNKNOWN(&v) : V_VT(&v) == VT_DISPATCH ? V_DISPATCH(&v) : nullptr;
    ComPtr<IEnumVARIANT> items;
    if (!unknown || FAILED(unknown->QueryInterface(IID_IEnumVARIANT, reinterpret_cast<void**>(items.put()))) || !items)
        raise(err::NotSupported);
    for (;;) {
        Variant item;
        ULONG fetched = 0;
        if (items->Next(1, item.put(), &fetched) != S_OK || fetched != 1) break;
        f(*item);
    }
}

Variant LateBound::invoke(std::wstring_view name, WORD flags, std::vector<Variant>& args) const {
    if (!object_) raise(err::ObjectNotSet);
    std::wstring n(name);
    LPOLESTR names[1] = {&n[0]};
    DISPID id = DISPID_UNKNOWN;
    if (FAILED(object_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id))) {
        // Script objects (a script's own class instances) may name their members only
        // through IDispatchEx.
        ComPtr<IDispatchEx> ex = object_.query<IDispatchEx>();
        Bstr bname(name);
        if (!ex || FAILED(ex->GetDispID(bname.get(), fdexNameCaseInsensitive, &id))) raise(err::NotSupported);
    }
    return invoke(object_.get(), id, flags, args);
}

Variant LateBound::invoke(IDispatch* object, DISPID id, WORD flags, std::vector<Variant>& args) {
    if (!object) raise(err::ObjectNotSet);
    // IDispatch takes its arguments last first. The arguments move into that order and
    // back after the call, so that what the callee leaves in an argument's storage (a
    // dispatch may replace a by-value argument it converted in place) has one owner.
    const size_t n = args.size();
    std::vector<VARIANT> reversed(n);
    for (size_t i = 0; i < n; ++i) reversed[n - 1 - i] = args[i].detach();
    DISPID putId = DISPID_PROPERTYPUT;
    DISPPARAMS params{reversed.empty() ? nullptr : reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
        params.rgdispidNamedArgs = &putId;
        params.cNamedArgs = 1;
    }
    Variant result;
    EXCEPINFO ei{};
    UINT argErr = 0;
    HRESULT hr = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, result.put(), &ei, &argErr);
    for (size_t i = 0; i < n; ++i) args[i] = Variant::take(reversed[n - 1 - i]);
    if (SUCCEEDED(hr)) return result;
    if (hr == DISP_E_EXCEPTION) {
        if (ei.pfnDeferredFillIn) ei.pfnDeferredFillIn(&ei);
        HRESULT code = ei.scode ? ei.scode : runtimeHresult(ei.wCode);
        std::wstring description(viewOf(ei.bstrDescription)), source(viewOf(ei.bstrSource));
        SysFreeString(ei.bstrDescription);
        SysFreeString(ei.bstrSource);
        SysFreeString(ei.bstrHelpFile);
        throw ComError(code, std::move(description), std::move(source));
    }
    switch (hr) {
    case DISP_E_MEMBERNOTFOUND:
    case DISP_E_UNKNOWNNAME: raise(err::NotSupported);
    case DISP_E_TYPEMISMATCH: raise(err::TypeMismatch);
    case DISP_E_OVERFLOW: raise(err::Overflow);
    case DISP_E_BADPARAMCOUNT: raise(err::WrongArgumentCount);
    case DISP_E_PARAMNOTOPTIONAL: raise(err::ArgumentNotOptional);
    case DISP_E_PARAMNOTFOUND: raise(err::NamedArgumentNotFound);
    case DISP_E_NONAMEDARGS: raise(446);
    default: check(hr);
    }
    return result;
}

}  // namespace vx
