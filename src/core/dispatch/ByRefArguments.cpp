#include "core/dispatch/ByRefArguments.h"

#include "core/runtime/ComPtr.h"

#include <cstring>

namespace vx {

namespace {

// The type a by-reference parameter points to, when it is one a stand-in can hold:
// a number, text, Boolean, date, currency, enumeration or object reference.
bool pointedType(ITypeInfo* info, const TYPEDESC& desc, VARTYPE& type);

bool userDefinedType(ITypeInfo* info, HREFTYPE ref, bool pointer, VARTYPE& type) {
    ComPtr<ITypeInfo> target;
    if (FAILED(info->GetRefTypeInfo(ref, target.put())) || !target) return false;
    TYPEATTR* attr = nullptr;
    if (FAILED(target->GetTypeAttr(&attr)) || !attr) return false;
    bool ok = false;
    switch (attr->typekind) {
        case TKIND_ENUM:
            type = VT_I4;
            ok = !pointer;
            break;
        case TKIND_ALIAS:
            ok = !pointer && pointedType(target.get(), attr->tdescAlias, type);
            break;
        case TKIND_DISPATCH:
        case TKIND_COCLASS:
            type = VT_DISPATCH;
            ok = pointer;
            break;
        case TKIND_INTERFACE:
            type = (attr->wTypeFlags & TYPEFLAG_FDUAL) ? VT_DISPATCH : VT_UNKNOWN;
            ok = pointer;
            break;
        default: break;
    }
    target->ReleaseTypeAttr(attr);
    return ok;
}

bool pointedType(ITypeInfo* info, const TYPEDESC& desc, VARTYPE& type) {
    switch (desc.vt) {
        case VT_I1: case VT_UI1: case VT_I2: case VT_UI2: case VT_I4: case VT_UI4: case VT_INT: case VT_UINT:
        case VT_I8: case VT_UI8: case VT_R4: case VT_R8: case VT_CY: case VT_DATE: case VT_BSTR: case VT_BOOL:
        case VT_DISPATCH: case VT_UNKNOWN:
            type = desc.vt;
            return true;
        case VT_USERDEFINED: return userDefinedType(info, desc.hreftype, false, type);
        case VT_PTR:
            return desc.lptdesc && desc.lptdesc->vt == VT_USERDEFINED &&
                   userDefinedType(info, desc.lptdesc->hreftype, true, type);
        default: return false;
    }
}

bool sameValue(const VARIANT& a, const VARIANT& b) noexcept {
    if (V_VT(&a) != V_VT(&b)) return false;
    switch (V_VT(&a)) {
        case VT_BSTR: {
            const UINT n = SysStringByteLen(V_BSTR(&a));
            return n == SysStringByteLen(V_BSTR(&b)) && (n == 0 || std::memcmp(V_BSTR(&a), V_BSTR(&b), n) == 0);
        }
        case VT_I1: case VT_UI1: return V_UI1(&a) == V_UI1(&b);
        case VT_I2: case VT_UI2: case VT_BOOL: return V_UI2(&a) == V_UI2(&b);
        case VT_I4: case VT_UI4: case VT_INT: case VT_UINT: case VT_R4: return V_UI4(&a) == V_UI4(&b);
        case VT_DISPATCH: case VT_UNKNOWN: return V_UNKNOWN(&a) == V_UNKNOWN(&b);
        default: return V_UI8(&a) == V_UI8(&b);  // I8, UI8, R8, CY, DATE
    }
}

}  // namespace

ByRefArguments::ByRefArguments(ITypeInfo* info, DISPID id, WORD flags, DISPPARAMS* params) noexcept
    : original_(params) {
    if (!info || !params || !params->rgvarg) return;
    // Most calls pass no variable: they cost one look at each argument.
    for (UINT i = params->cNamedArgs; i < params->cArgs; ++i)
        if (V_VT(&params->rgvarg[i]) == (VT_BYREF | VT_VARIANT)) {
            prepare(info, id, flags);
            return;
        }
}

void ByRefArguments::prepare(ITypeInfo* info, DISPID id, WORD flags) noexcept {
    try {
        // The member's description. (A scan rather than ITypeInfo2::GetFuncIndexOfMemId:
        // for a dual interface, some implementations count the inherited IDispatch members
        // in one of the two and not in the other.)
        const INVOKEKIND wanted[] = {INVOKE_PROPERTYPUTREF, INVOKE_PROPERTYPUT, INVOKE_FUNC, INVOKE_PROPERTYGET};
        const WORD asked[] = {DISPATCH_PROPERTYPUTREF, DISPATCH_PROPERTYPUT, DISPATCH_METHOD, DISPATCH_PROPERTYGET};
        FUNCDESC* func = nullptr;
        for (int k = 0; k < 4 && !func; ++k) {
            if (!(flags & asked[k])) continue;
            for (UINT index = 0; index < 4096 && !func; ++index) {
                FUNCDESC* candidate = nullptr;
                if (FAILED(info->GetFuncDesc(index, &candidate)) || !candidate) break;
                if (candidate->memid == id && candidate->invkind == wanted[k])
                    func = candidate;
                else
                    info->ReleaseFuncDesc(candidate);
            }
        }
        if (!func) return;
        struct Release {
            ITypeInfo* info;
            FUNCDESC* func;
            ~Release() { info->ReleaseFuncDesc(func); }
        } release{info, func};

        // Positional arguments only: they come last in rgvarg, first parameter last.
        const UINT positional = original_->cArgs - original_->cNamedArgs;
        adapted_.reserve(positional);
        for (UINT i = 0; i < positional && i < static_cast<UINT>(func->cParams); ++i) {
            const UINT slot = original_->cArgs - 1 - i;
            const VARIANTARG& arg = original_->rgvarg[slot];
            if (V_VT(&arg) != (VT_BYREF | VT_VARIANT) || !V_VARIANTREF(&arg)) continue;
            const ELEMDESC& param = func->lprgelemdescParam[i];
            if (param.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) continue;
            VARTYPE type = VT_EMPTY;
            if (param.tdesc.vt != VT_PTR || !param.tdesc.lptdesc || !pointedType(info, *param.tdesc.lptdesc, type))
                continue;
            VARIANT* host = const_cast<VARIANT*>(&deref(arg));
            if (V_VT(host) & (VT_BYREF | VT_ARRAY)) continue;
            Variant value;
            if ((type == VT_DISPATCH || type == VT_UNKNOWN) && V_VT(host) == VT_EMPTY) {
                V_VT(value.get()) = type;  // an unset variable stands for Nothing
                V_UNKNOWN(value.get()) = nullptr;
            } else if (FAILED(VariantChangeTypeEx(value.put(), host, LOCALE_USER_DEFAULT, 0, type))) {
                continue;  // the dispatch reports the mismatch as it would have
            }
            if (adapted_.empty()) {
                args_.assign(original_->rgvarg, original_->rgvarg + original_->cArgs);
                params_ = *original_;
                params_.rgvarg = args_.data();
            }
            Variant original = value;
            adapted_.push_back(StandIn{host, std::move(value), std::move(original)});
            VARIANTARG& standIn = args_[slot];
            V_VT(&standIn) = static_cast<VARTYPE>(VT_BYREF | type);
            V_BYREF(&standIn) = &V_UI1(adapted_.back().value.get());  // the start of the value
        }
    } catch (...) {
        adapted_.clear();  // out of memory: the call goes on with the host's own arguments
    }
}

void ByRefArguments::writeBack() noexcept {
    for (StandIn& s : adapted_)
        if (!sameValue(*s.value, *s.original)) VariantCopy(s.hostVariable, s.value.get());
}

}  // namespace vx
