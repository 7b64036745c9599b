#include "core/runtime/SafeArray.h"

#include "core/runtime/ComPtr.h"
#include "core/runtime/Errors.h"

#include <cstring>
#include <new>

namespace vx {

ArrayView::ArrayView(const VARIANT& v) {
    const VARIANT& d = deref(v);
    if (!(V_VT(&d) & VT_ARRAY)) raise(err::TypeMismatch);
    elementType_ = V_VT(&d) & ~(VT_ARRAY | VT_BYREF);
    sa_ = (V_VT(&d) & VT_BYREF) ? (V_ARRAYREF(&d) ? *V_ARRAYREF(&d) : nullptr) : V_ARRAY(&d);
}

long ArrayView::dimensions() const noexcept { return sa_ ? static_cast<long>(SafeArrayGetDim(sa_)) : 0; }

long ArrayView::lbound(long dim) const {
    LONG b = 0;
    if (!sa_ || FAILED(SafeArrayGetLBound(sa_, static_cast<UINT>(dim), &b))) raise(err::SubscriptOutOfRange);
    return b;
}

long ArrayView::ubound(long dim) const {
    LONG b = 0;
    if (!sa_ || FAILED(SafeArrayGetUBound(sa_, static_cast<UINT>(dim), &b))) raise(err::SubscriptOutOfRange);
    return b;
}

Variant ArrayView::at(long i) const {
    LONG idx[1] = {i};
    return element(idx, 1);
}

Variant ArrayView::at(long i, long j) const {
    // Indices in declaration order: i for the first dimension, j for the second.
    LONG idx[2] = {i, j};
    return element(idx, 2);
}

Variant ArrayView::element(LONG* indices, long count) const {
    if (!sa_ || dimensions() != count) raise(err::SubscriptOutOfRange);
    void* p = nullptr;
    if (FAILED(SafeArrayPtrOfIndex(sa_, indices, &p))) raise(err::SubscriptOutOfRange);
    // A reference to the element, copied out as a value; a record's comes with the
    // array's description of it.
    VARIANT ref;
    VariantInit(&ref);
    ComPtr<IRecordInfo> record;
    if (elementType_ == VT_VARIANT) {
        V_VT(&ref) = VT_BYREF | VT_VARIANT;
        V_VARIANTREF(&ref) = static_cast<VARIANT*>(p);
    } else if (elementType_ == VT_RECORD) {
        if (FAILED(SafeArrayGetRecordInfo(sa_, record.put())) || !record) raise(err::TypeMismatch);
        V_VT(&ref) = VT_BYREF | VT_RECORD;
        V_RECORD(&ref) = p;
        V_RECORDINFO(&ref) = record.get();
    } else {
        V_VT(&ref) = static_cast<VARTYPE>(VT_BYREF | elementType_);
        V_BYREF(&ref) = p;
    }
    Variant out;
    HRESULT hr = VariantCopyInd(out.put(), &ref);
    if (FAILED(hr)) raise(err::TypeMismatch);
    return out;
}

Variant makeVariantArray(const std::vector<Variant>& items) {
    SAFEARRAY* sa = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(items.size()));
    if (!sa) throw std::bad_alloc();
    for (LONG i = 0; i < static_cast<LONG>(items.size()); ++i) {
        HRESULT hr = SafeArrayPutElement(sa, &i, const_cast<VARIANT*>(items[static_cast<size_t>(i)].get()));
        if (FAILED(hr)) {
            SafeArrayDestroy(sa);
            check(hr);
        }
    }
    Variant v;
    V_VT(v.get()) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(v.get()) = sa;
    return v;
}

Variant makeByteArray(const unsigned char* data, size_t size) {
    SAFEARRAY* sa = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(size));
    if (!sa) throw std::bad_alloc();
    if (size) {
        void* p = nullptr;
        SafeArrayAccessData(sa, &p);
        std::memcpy(p, data, size);
        SafeArrayUnaccessData(sa);
    }
    Variant v;
    V_VT(v.get()) = VT_ARRAY | VT_UI1;
    V_ARRAY(v.get()) = sa;
    return v;
}

}  // namespace vx
