#include "core/dispatch/DispatchObject.h"

#include "core/runtime/Variant.h"

#include <cstring>

namespace vx {

HRESULT finishInvoke(HRESULT hr, EXCEPINFO* excepInfo) noexcept {
    if (SUCCEEDED(hr)) return hr;
    const LastError& e = lastError();
    if (FAILED(e.hr) && (hr == e.hr || hr == DISP_E_EXCEPTION)) {
        if (excepInfo) {
            SysFreeString(excepInfo->bstrSource);
            SysFreeString(excepInfo->bstrDescription);
            SysFreeString(excepInfo->bstrHelpFile);
            *excepInfo = EXCEPINFO{};
            excepInfo->scode = e.hr;
            excepInfo->bstrSource = SysAllocString(e.source.c_str());
            excepInfo->bstrDescription = SysAllocString(e.description.c_str());
        }
        return DISP_E_EXCEPTION;
    }
    return hr;
}

namespace {

bool omitted(const VARIANT& v) noexcept { return V_VT(&v) == VT_ERROR && V_ERROR(&v) == DISP_E_PARAMNOTFOUND; }

// What read makes of the attributes of the type a user-defined type refers to;
// VT_EMPTY when they cannot be read.
template <class Read>
VARTYPE ofReferencedType(ITypeInfo* info, HREFTYPE type, Read&& read) noexcept {
    ComPtr<ITypeInfo> ref;
    if (FAILED(info->GetRefTypeInfo(type, ref.put()))) return VT_EMPTY;
    TYPEATTR* attr = nullptr;
    if (FAILED(ref->GetTypeAttr(&attr))) return VT_EMPTY;
    const VARTYPE vt = read(*attr);
    ref->ReleaseTypeAttr(attr);
    return vt;
}

// The object reference an interface pointer type stands for: VT_DISPATCH for a
// dispatch or dual interface, VT_EMPTY for anything else.
VARTYPE objectType(ITypeInfo* info, const TYPEDESC& pointer) noexcept {
    const TYPEDESC* t = pointer.lptdesc;
    if (!t || t->vt != VT_USERDEFINED) return VT_EMPTY;
    return ofReferencedType(info, t->hreftype, [](const TYPEATTR& attr) -> VARTYPE {
        const bool dispatch = attr.typekind == TKIND_DISPATCH ||
                              (attr.typekind == TKIND_INTERFACE && (attr.wTypeFlags & TYPEFLAG_FDUAL));
        return dispatch ? VT_DISPATCH : VT_EMPTY;
    });
}

// The type a by-reference parameter points to, with enumerations and aliases resolved to
// their base type, and an interface pointer to the object reference it is.
VARTYPE pointeeType(ITypeInfo* info, const TYPEDESC& pointer) noexcept {
    const TYPEDESC* t = pointer.lptdesc;
    if (!t) return VT_EMPTY;
    if (t->vt == VT_PTR) return objectType(info, *t);
    if (t->vt != VT_USERDEFINED) return t->vt;
    return ofReferencedType(info, t->hreftype, [](const TYPEATTR& attr) -> VARTYPE {
        if (attr.typekind == TKIND_ENUM) return VT_I4;
        return attr.typekind == TKIND_ALIAS ? attr.tdescAlias.vt : static_cast<VARTYPE>(VT_EMPTY);
    });
}

// The types a completion stores values of (a reference points at the value's storage).
bool storable(VARTYPE vt) noexcept {
    switch (vt) {
    case VT_I2: case VT_I4: case VT_R4: case VT_R8: case VT_CY: case VT_DATE: case VT_BSTR:
    case VT_BOOL: case VT_UI1: case VT_VARIANT: case VT_DISPATCH:
        return true;
    default:
        return false;
    }
}

bool sameValue(const VARIANT& a, const VARIANT& b) noexcept {
    if (V_VT(&a) != V_VT(&b)) return false;
    if (V_VT(&a) == VT_BSTR)
        return SysStringLen(V_BSTR(&a)) == SysStringLen(V_BSTR(&b)) &&
               (SysStringLen(V_BSTR(&a)) == 0 ||
                std::memcmp(V_BSTR(&a), V_BSTR(&b), SysStringLen(V_BSTR(&a)) * sizeof(OLECHAR)) == 0);
    return V_CY(&a).int64 == V_CY(&b).int64;  // the eight bytes every other stored type fits in
}

}  // namespace

CallPlan::CallPlan(ITypeInfo* info) noexcept {
    if (!info) return;
    // A dual interface's members are described by its interface part.
    ComPtr<ITypeInfo> own(info);
    TYPEATTR* attr = nullptr;
    if (FAILED(info->GetTypeAttr(&attr))) return;
    const bool dual = attr->typekind == TKIND_DISPATCH && (attr->wTypeFlags & TYPEFLAG_FDUAL);
    info->ReleaseTypeAttr(attr);
    HREFTYPE ref = 0;
    ComPtr<ITypeInfo> part;
    if (dual && SUCCEEDED(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &ref)) &&
        SUCCEEDED(info->GetRefTypeInfo(ref, part.put())))
        own = part;
    if (FAILED(own->GetTypeAttr(&attr))) return;
    const UINT functions = attr->cFuncs;
    own->ReleaseTypeAttr(attr);
    try {
        for (UINT f = 0; f < functions; ++f) {
            FUNCDESC* fd = nullptr;
            if (FAILED(own->GetFuncDesc(f, &fd))) continue;
            Member m{fd->memid, fd->invkind, {}};
            bool references = false;
            // The parameters a caller passes (the result and a locale are not among them).
            for (SHORT i = 0; i < fd->cParams; ++i) {
                const ELEMDESC& e = fd->lprgelemdescParam[i];
                if (e.paramdesc.wParamFlags & (PARAMFLAG_FRETVAL | PARAMFLAG_FLCID)) break;
                Param p;
                if (e.tdesc.vt == VT_PTR) {
                    p.pointee = pointeeType(own.get(), e.tdesc);
                    if (!storable(p.pointee)) p.pointee = VT_EMPTY;
                    if (p.pointee != VT_EMPTY && (e.paramdesc.wParamFlags & PARAMFLAG_FHASDEFAULT) &&
                        e.paramdesc.pparamdescex) {
                        p.hasDefault = true;
                        p.defaultValue = Variant::copyOf(e.paramdesc.pparamdescex->varDefaultValue);
                    }
                    references = references || p.pointee != VT_EMPTY;
                }
                m.params.push_back(std::move(p));
            }
            own->ReleaseFuncDesc(fd);
            if (references) members_.push_back(std::move(m));
        }
    } catch (...) {
        members_.clear();
    }
}

const CallPlan::Member* CallPlan::find(DISPID id, WORD flags) const noexcept {
    for (const Member& m : members_)
        if (m.id == id && (((flags & DISPATCH_METHOD) && m.kind == INVOKE_FUNC) ||
                           ((flags & DISPATCH_PROPERTYGET) && m.kind == INVOKE_PROPERTYGET) ||
                           ((flags & DISPATCH_PROPERTYPUT) && m.kind == INVOKE_PROPERTYPUT) ||
                           ((flags & DISPATCH_PROPERTYPUTREF) && m.kind == INVOKE_PROPERTYPUTREF)))
            return &m;
    return nullptr;
}

DISPPARAMS* CallArguments::complete(const CallPlan& plan, DISPID id, WORD flags, DISPPARAMS* params) noexcept {
    if (!params) return params;
    // A property assignment passes its value as the one named argument (and the member's
    // last parameter); every other call passes its arguments by position.
    const bool assignment = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    const UINT named = assignment ? 1 : 0;
    if (params->cNamedArgs != named || params->cArgs < named) return params;
    if (assignment && (!params->rgdispidNamedArgs || params->rgdispidNamedArgs[0] != DISPID_PROPERTYPUT)) return params;
    const CallPlan::Member* member = plan.find(id, flags);
    if (!member || member->params.size() < named) return params;
    const UINT count = static_cast<UINT>(member->params.size());
    const UINT positional = params->cArgs - named;  // arguments by position, in rgvarg after the named one
    if (positional > count - named) return params;
    auto given = [&](UINT i) -> const VARIANT* {
        if (assignment && i == count - 1) return &params->rgvarg[0];
        return i < positional ? &params->rgvarg[params->cArgs - 1 - i] : nullptr;
    };

    // What each position needs: an omitted by-reference parameter with a default gets a
    // reference to the default; a host variable (a reference to a Variant) passed where a
    // typed reference is declared gets a reference to its value in that type.
    enum Need { Pass, Default, Typed };
    auto needOf = [&](UINT i) {
        const CallPlan::Param& p = member->params[i];
        const VARIANT* arg = given(i);
        if (p.pointee == VT_EMPTY) return Pass;
        if (!arg || omitted(*arg)) return p.hasDefault ? Default : Pass;
        if (V_VT(arg) == (VT_BYREF | VT_VARIANT) && V_VARIANTREF(arg) && p.pointee != VT_VARIANT) return Typed;
        return Pass;
    };
    // The positional arguments to pass: up to the last one that needs completing.
    UINT total = 0;
    bool any = false;
    for (UINT i = 0; i < count; ++i) {
        if (needOf(i) == Pass) continue;
        any = true;
        if (i < count - named) total = i + 1;
    }
    if (!any) return params;
    if (total < positional) total = positional;

    try {
        args_.assign(total + named, VARIANT{});
        values_.reserve(total + named);  // the references below point into it: it must not grow
        writeBacks_.reserve(total + named);
        lent_.reserve(total + named);
        for (UINT i = 0; i < total + named; ++i) {
            // The named value first, then the positional arguments last to first.
            const bool assigned = assignment && i == total;
            const UINT param = assigned ? count - 1 : i;
            VARIANT& arg = assigned ? args_[0] : args_[named + total - 1 - i];
            const VARIANT* src = given(param);
            const Need need = needOf(param);
            if (need == Pass) {
                if (src) {
                    // The caller's own argument, moved into the call and back after it:
                    // the type info may change it in place (convert it, or let the member
                    // write into it), and the caller then owns what the call left.
                    arg = *src;
                    lent_.push_back({const_cast<VARIANT*>(src), static_cast<size_t>(&arg - args_.data())});
                } else {
                    V_VT(&arg) = VT_ERROR;  // omitted: the type info supplies what it would
                    V_ERROR(&arg) = DISP_E_PARAMNOTFOUND;
                }
                continue;
            }
            const CallPlan::Param& p = member->params[param];
            const VARIANT& from = need == Default ? *p.defaultValue : deref(*src);
            Variant value;
            if (p.pointee == VT_VARIANT)
                value = Variant::copyOf(from);
            else if (p.pointee == VT_DISPATCH && V_VT(&from) == VT_EMPTY)
                value = Variant::fromDispatch(nullptr);  // a variable never set stands for Nothing
            else if (FAILED(VariantChangeType(value.put(), const_cast<VARIANT*>(&from), 0, p.pointee)))
                return params;  // the type info reports what does not convert
            if (need == Typed) writeBacks_.push_back({V_VARIANTREF(src), values_.size(), value});
            values_.push_back(std::move(value));
            VARIANT& stored = *values_.back().get();
            if (p.pointee == VT_VARIANT) {
                V_VT(&arg) = VT_BYREF | VT_VARIANT;
                V_VARIANTREF(&arg) = &stored;
            } else {
                V_VT(&arg) = static_cast<VARTYPE>(VT_BYREF | p.pointee);
                V_BYREF(&arg) = &V_I4(&stored);  // the value's storage, whatever its type
            }
        }
    } catch (...) {
        writeBacks_.clear();
        lent_.clear();
        return params;
    }
    completed_ = DISPPARAMS{args_.data(), assignment ? params->rgdispidNamedArgs : nullptr, total + named, named};
    named_ = named;
    added_ = total - positional;
    return &completed_;
}

void CallArguments::finish(UINT position, UINT* argErr) noexcept {
    // The type info counts positions in the completed arguments; the caller's have the
    // named value (if any) first and none of the added ones.
    if (argErr && position != noPosition) {
        if (position < named_)
            *argErr = position;
        else if (position >= named_ + added_)
            *argErr = position - added_;
    }
    for (const Lent& l : lent_) *l.owner = args_[l.slot];
    lent_.clear();
    // A member that changed a typed reference changed the host's variable.
    for (WriteBack& w : writeBacks_) {
        const VARIANT& now = *values_[w.value].get();
        if (sameValue(now, *w.before)) continue;
        try {
            writeBack(*w.variable, now);
        } catch (...) {
            // a value the variable cannot take leaves it as it was
        }
    }
    writeBacks_.clear();
}

}  // namespace vx
