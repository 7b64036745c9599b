#pragma once
// Arrays as hosts pass them: SAFEARRAYs of any element type inside a Variant, read
// element by element as Variants; and arrays of Variants built for results.
#include "core/runtime/Variant.h"

#include <vector>

namespace vx {

// A read view of the array a Variant holds (following references). Not an array: error 13.
class ArrayView {
public:
    explicit ArrayView(const VARIANT& v);
    // The array itself, or null for an unallocated dynamic array.
    SAFEARRAY* get() const noexcept { return sa_; }
    long dimensions() const noexcept;
    // The type of the elements (VT_VARIANT for an array of Variants).
    VARTYPE elementType() const noexcept { return elementType_; }
    // Bounds of dimension dim (1-based, as LBound and UBound take it); error 9 when out of range.
    long lbound(long dim = 1) const;
    long ubound(long dim = 1) const;
    // The element at the given indices (one per dimension, first dimension first);
    // error 9 when an index is out of range.
    Variant at(long i) const;
    Variant at(long i, long j) const;

private:
    Variant element(LONG* indices, long count) const;
    SAFEARRAY* sa_ = nullptr;
    VARTYPE elementType_ = VT_EMPTY;
};

// A one-dimensional array of Variants, indexed from 0, as a Variant.
Variant makeVariantArray(const std::vector<Variant>& items);
// A one-dimensional array of bytes, indexed from 0, as a Variant.
Variant makeByteArray(const unsigned char* data, size_t size);

}  // namespace vx
