#include "core/runtime/Variant.h"

#include "core/runtime/Errors.h"

#include <new>

namespace vx {

Bstr::Bstr(std::wstring_view text) {
    b_ = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    if (!b_) throw std::bad_alloc();
}

Variant::Variant(const Variant& o) {
    VariantInit(&v_);
    check(VariantCopy(&v_, const_cast<VARIANT*>(&o.v_)));
}

Variant Variant::copyOf(const VARIANT& src) {
    Variant r;
    check(VariantCopyInd(&r.v_, const_cast<VARIANT*>(&deref(src))));
    return r;
}

Variant Variant::take(VARIANT& src) noexcept {
    Variant r;
    r.v_ = src;
    VariantInit(&src);
    return r;
}

Variant Variant::null() {
    Variant r;
    V_VT(&r.v_) = VT_NULL;
    return r;
}

Variant Variant::missing() {
    Variant r;
    V_VT(&r.v_) = VT_ERROR;
    V_ERROR(&r.v_) = DISP_E_PARAMNOTFOUND;
    return r;
}

Variant Variant::fromShort(int16_t n) {
    Variant r;
    V_VT(&r.v_) = VT_I2;
    V_I2(&r.v_) = n;
    return r;
}

Variant Variant::fromLong(int32_t n) {
    Variant r;
    V_VT(&r.v_) = VT_I4;
    V_I4(&r.v_) = n;
    return r;
}

Variant Variant::fromDouble(double d) {
    Variant r;
    V_VT(&r.v_) = VT_R8;
    V_R8(&r.v_) = d;
    return r;
}

Variant Variant::fromBool(bool b) {
    Variant r;
    V_VT(&r.v_) = VT_BOOL;
    V_BOOL(&r.v_) = b ? VARIANT_TRUE : VARIANT_FALSE;
    return r;
}

Variant Variant::fromDate(DATE d) {
    Variant r;
    V_VT(&r.v_) = VT_DATE;
    V_DATE(&r.v_) = d;
    return r;
}

Variant Variant::fromText(std::wstring_view s) {
    Variant r;
    V_BSTR(&r.v_) = Bstr(s).detach();
    V_VT(&r.v_) = VT_BSTR;
    return r;
}

Variant Variant::fromDispatch(IDispatch* p) {
    Variant r;
    V_VT(&r.v_) = VT_DISPATCH;
    V_DISPATCH(&r.v_) = p;
    if (p) p->AddRef();
    return r;
}

Variant Variant::fromUnknown(IUnknown* p) {
    Variant r;
    V_VT(&r.v_) = VT_UNKNOWN;
    V_UNKNOWN(&r.v_) = p;
    if (p) p->AddRef();
    return r;
}

void Variant::detachTo(VARIANT* out) noexcept {
    VariantClear(out);
    *out = detach();
}

const VARIANT& deref(const VARIANT& v) noexcept {
    const VARIANT* p = &v;
    // Hosts may nest references (a by-reference argument passed on by reference).
    for (int depth = 0; depth < 8 && V_VT(p) == (VT_BYREF | VT_VARIANT) && V_VARIANTREF(p); ++depth)
        p = V_VARIANTREF(p);
    return *p;
}

VARTYPE valueType(const VARIANT& v) noexcept { return V_VT(&deref(v)) & ~VT_BYREF; }

bool isMissing(const VARIANT& v) noexcept {
    const VARIANT& d = deref(v);
    if (V_VT(&d) == VT_ERROR) return V_ERROR(&d) == DISP_E_PARAMNOTFOUND;
    if (V_VT(&d) == (VT_ERROR | VT_BYREF)) return V_ERRORREF(&d) && *V_ERRORREF(&d) == DISP_E_PARAMNOTFOUND;
    return false;
}

bool isEmpty(const VARIANT& v) noexcept { return valueType(v) == VT_EMPTY; }
bool isNull(const VARIANT& v) noexcept { return valueType(v) == VT_NULL; }
bool isArray(const VARIANT& v) noexcept { return (valueType(v) & VT_ARRAY) != 0; }
bool isText(const VARIANT& v) noexcept { return valueType(v) == VT_BSTR; }

bool isObject(const VARIANT& v) noexcept {
    VARTYPE t = valueType(v);
    return t == VT_DISPATCH || t == VT_UNKNOWN;
}

IDispatch* dispatchOf(const VARIANT& v) noexcept {
    const VARIANT& d = deref(v);
    if (V_VT(&d) == VT_DISPATCH) return V_DISPATCH(&d);
    if (V_VT(&d) == (VT_DISPATCH | VT_BYREF)) return V_DISPATCHREF(&d) ? *V_DISPATCHREF(&d) : nullptr;
    return nullptr;
}

IUnknown* unknownOf(const VARIANT& v) noexcept {
    const VARIANT& d = deref(v);
    if (V_VT(&d) == VT_UNKNOWN) return V_UNKNOWN(&d);
    if (V_VT(&d) == (VT_UNKNOWN | VT_BYREF)) return V_UNKNOWNREF(&d) ? *V_UNKNOWNREF(&d) : nullptr;
    return dispatchOf(d);
}

void assignToReference(VARIANT& arg, const VARIANT& value) {
    if (!(V_VT(&arg) & VT_BYREF)) return;
    // A reference to a Variant: store the value itself.
    VARIANT* target = &arg;
    while (V_VT(target) == (VT_BYREF | VT_VARIANT) && V_VARIANTREF(target)) {
        target = V_VARIANTREF(target);
        if (!(V_VT(target) & VT_BYREF)) {
            Variant copy = Variant::copyOf(value);
            copy.detachTo(target);
            return;
        }
    }
    // A typed reference (a host variable declared As String, As Long ...): convert.
    VARTYPE want = V_VT(target) & ~VT_BYREF;
    Variant converted;
    HRESULT hr = VariantChangeTypeEx(converted.put(), const_cast<VARIANT*>(&deref(value)),
                                     LOCALE_USER_DEFAULT, 0, want);
    if (FAILED(hr)) raise(conversionErrorNumber(hr));
    VARIANT& c = *converted.get();
    switch (want) {
    case VT_BSTR:
        SysFreeString(*V_BSTRREF(target));
        *V_BSTRREF(target) = V_BSTR(&c);
        V_VT(&c) = VT_EMPTY;
        break;
    case VT_I2: *V_I2REF(target) = V_I2(&c); break;
    case VT_I4: *V_I4REF(target) = V_I4(&c); break;
    case VT_R4: *V_R4REF(target) = V_R4(&c); break;
    case VT_R8: *V_R8REF(target) = V_R8(&c); break;
    case VT_BOOL: *V_BOOLREF(target) = V_BOOL(&c); break;
    case VT_DATE: *V_DATEREF(target) = V_DATE(&c); break;
    case VT_CY: *V_CYREF(target) = V_CY(&c); break;
    case VT_UI1: *V_UI1REF(target) = V_UI1(&c); break;
    default: raise(err::TypeMismatch);
    }
}

void writeBack(VARIANT& param, const VARIANT& value) {
    if (V_VT(&param) & VT_BYREF)
        assignToReference(param, value);
    else
        Variant::copyOf(value).detachTo(&param);
}

}  // namespace vx

namespace vx {

void moveBack(VARIANT& param, Variant value) {
    VARIANT* target = &param;
    for (int depth = 0; depth < 8 && V_VT(target) == (VT_BYREF | VT_VARIANT) && V_VARIANTREF(target); ++depth)
        target = V_VARIANTREF(target);
    if (V_VT(target) & VT_BYREF) {
        writeBack(param, *value);
        return;
    }
    if (FAILED(VariantClear(target))) raise(10);  // This array is fixed or temporarily locked
    *target = value.detach();
}

}  // namespace vx
