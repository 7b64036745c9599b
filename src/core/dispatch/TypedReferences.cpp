#include "core/dispatch/TypedReferences.h"

#include "core/runtime/ComPtr.h"

#include <cstring>

namespace vx {

namespace {

// The value type a parameter refers to when it is a typed reference the bridge can
// serve (an enumeration counts as a Long); VT_EMPTY otherwise.
VARTYPE referencedType(ITypeInfo* info, const TYPEDESC& type) {
    if (type.vt != VT_PTR || !type.lptdesc) return VT_EMPTY;
    const TYPEDESC& target = *type.lptdesc;
    switch (target.vt) {
    case VT_I1: case VT_I2: case VT_I4: case VT_I8: case VT_INT:
    case VT_UI1: case VT_UI2: case VT_UI4: case VT_UI8: case VT_UINT:
    case VT_R4: case VT_R8: case VT_CY: case VT_DATE: case VT_BSTR: case VT_BOOL:
        return target.vt;
    case VT_USERDEFINED: {
        ComPtr<ITypeInfo> ref;
        if (FAILED(info->GetRefTypeInfo(target.hreftype, ref.put()))) return VT_EMPTY;
        TYPEATTR* attr = nullptr;
        if (FAILED(ref->GetTypeAttr(&attr))) return VT_EMPTY;
        const bool isEnum = attr->typekind == TKIND_ENUM;
        ref->ReleaseTypeAttr(attr);
        return isEnum ? VT_I4 : VT_EMPTY;
    }
    default:
        return VT_EMPTY;
    }
}

size_t valueSize(VARTYPE type) {
    switch (type) {
    case VT_I1: case VT_UI1: return 1;
    case VT_I2: case VT_UI2: case VT_BOOL: return 2;
    case VT_I4: case VT_UI4: case VT_INT: case VT_UINT: case VT_R4: return 4;
    default: return 8;  // VT_I8, VT_UI8, VT_R8, VT_CY, VT_DATE
    }
}

bool sameValue(const VARIANT& a, const VARIANT& b) {
    if (V_VT(&a) != V_VT(&b)) return false;
    if (V_VT(&a) == VT_BSTR) {
        const UINT n = SysStringLen(V_BSTR(&a));
        return n == SysStringLen(V_BSTR(&b)) && (n == 0 || std::memcmp(V_BSTR(&a), V_BSTR(&b), n * sizeof(OLECHAR)) == 0);
    }
    return std::memcmp(&V_UI1(&a), &V_UI1(&b), valueSize(V_VT(&a))) == 0;
}

}  // namespace

TypedReferences::TypedReferences(ITypeInfo* info, DISPID id, WORD flags, DISPPARAMS* params) : use_(params) {
    if (!info || !params || !params->rgvarg) return;
    bool anyReference = false;
    for (UINT i = 0; i < params->cArgs; ++i)
        if (V_VT(&params->rgvarg[i]) == (VT_BYREF | VT_VARIANT)) anyReference = true;
    if (!anyReference) return;

    // The member's description: the first one with this identifier and a kind of call the
    // flags allow (a method call from a script also allows a property get).
    TYPEATTR* attr = nullptr;
    if (FAILED(info->GetTypeAttr(&attr))) return;
    const UINT count = attr->cFuncs;
    info->ReleaseTypeAttr(attr);
    for (UINT index = 0; index < count; ++index) {
        FUNCDESC* func = nullptr;
        if (FAILED(info->GetFuncDesc(index, &func))) return;
        const bool match = func->memid == id && (flags & func->invkind);
        if (match) bridge(info, *func, *params);
        info->ReleaseFuncDesc(func);
        if (match) return;
    }
}

void TypedReferences::bridge(ITypeInfo* info, const FUNCDESC& func, DISPPARAMS& params) {
    // A property assignment's value is the last parameter; the other named arguments
    // carry their parameter's position; positional arguments come last to first.
    auto parameterOf = [&](UINT argIndex) -> int {
        if (argIndex < params.cNamedArgs && params.rgdispidNamedArgs) {
            const DISPID named = params.rgdispidNamedArgs[argIndex];
            return named == DISPID_PROPERTYPUT ? func.cParams - 1 : named;
        }
        return static_cast<int>(params.cArgs - 1 - argIndex);
    };
    for (UINT i = 0; i < params.cArgs; ++i) {
        VARIANTARG& arg = params.rgvarg[i];
        if (V_VT(&arg) != (VT_BYREF | VT_VARIANT) || !V_VARIANTREF(&arg)) continue;
        const int p = parameterOf(i);
        if (p < 0 || p >= func.cParams) continue;
        const VARTYPE type = referencedType(info, func.lprgelemdescParam[p].tdesc);
        if (type == VT_EMPTY) continue;
        // The host's variable: follow references to references.
        VARIANT* variable = V_VARIANTREF(&arg);
        while (V_VT(variable) == (VT_BYREF | VT_VARIANT) && V_VARIANTREF(variable)) variable = V_VARIANTREF(variable);
        const VARTYPE held = V_VT(variable) & ~VT_BYREF;
        if (held == VT_DISPATCH || held == VT_UNKNOWN || (V_VT(variable) & VT_ARRAY)) continue;
        Slot slot{variable, Variant(), Variant()};
        if (FAILED(VariantChangeTypeEx(slot.value.put(), variable, LOCALE_USER_DEFAULT, 0, type))) continue;
        if (FAILED(VariantCopy(slot.before.put(), slot.value.get()))) continue;
        if (args_.empty()) args_.assign(params.rgvarg, params.rgvarg + params.cArgs);
        slots_.push_back(std::move(slot));
        // Every value type's storage begins the Variant's value union.
        VARIANTARG& replaced = args_[i];
        V_VT(&replaced) = VT_BYREF | type;
        V_BYREF(&replaced) = &V_UI1(slots_.back().value.get());
    }
    if (args_.empty()) return;
    copy_ = params;
    copy_.rgvarg = args_.data();
    use_ = &copy_;
}

void TypedReferences::writeBack() noexcept {
    for (Slot& slot : slots_) {
        if (sameValue(*slot.value, *slot.before)) continue;
        if (V_VT(slot.variable) & VT_BYREF) {
            try {
                assignToReference(*slot.variable, *slot.value);
            } catch (...) {
            }
        } else {
            slot.value.detachTo(slot.variable);
        }
    }
    slots_.clear();
}

}  // namespace vx
