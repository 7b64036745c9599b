#include "text/Arrays.h"

#include "Vx_MainEnums.h"
#include "core/runtime/Checked.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/Handles.h"
#include "core/runtime/SafeArray.h"
#include "core/runtime/Text.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <new>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

namespace vx::arrays {

namespace {

// An element's value seen as a Variant that does not own it (never cleared): the element
// itself for an array of Variants, else the element's bytes under the array's type. A
// record has no value a member could use: it is seen as an error value.
VARIANT viewOfElement(VARTYPE type, const void* p, size_t size) {
    VARIANT v;
    VariantInit(&v);
    if (type == VT_VARIANT) return deref(*static_cast<const VARIANT*>(p));
    if (type == VT_DECIMAL) {
        std::memcpy(&v, p, sizeof(DECIMAL));  // a Decimal fills the Variant, its type field included
        V_VT(&v) = VT_DECIMAL;
        return v;
    }
    if (type == VT_RECORD || size > sizeof(LONGLONG)) {
        V_VT(&v) = VT_ERROR;
        V_ERROR(&v) = DISP_E_TYPEMISMATCH;
        return v;
    }
    std::memcpy(&V_UI1(&v), p, size);
    V_VT(&v) = type;
    return v;
}

// The text of a value for comparisons, or none for a value that has no text.
std::optional<std::wstring> comparableText(const VARIANT& v) {
    if (isObject(v) || isArray(v) || V_VT(&v) == VT_ERROR) return std::nullopt;
    std::optional<std::wstring> text;
    tryStatement([&] { text = toText(v); });
    return text;
}

// ---- sorting ----

enum Rank { RankNull, RankEmpty, RankNumber, RankNotANumber, RankText, RankOther };

struct SortKey {
    Rank rank = RankOther;
    double number = 0;
    std::string text;  // the locale's sort key of a text: its bytes compare as the texts do
};

std::string sortKeyOf(BSTR text, bool caseSensitive) {
    const int length = static_cast<int>(std::min<size_t>(SysStringLen(text), INT_MAX / 4));
    if (length == 0) return {};
    const DWORD flags = LCMAP_SORTKEY | (caseSensitive ? 0 : NORM_IGNORECASE);
    const int size = LCMapStringW(LOCALE_USER_DEFAULT, flags, text, length, nullptr, 0);
    if (size <= 0) return {};
    std::string key(static_cast<size_t>(size), '\0');
    LCMapStringW(LOCALE_USER_DEFAULT, flags, text, length, reinterpret_cast<LPWSTR>(&key[0]), size);
    while (!key.empty() && key.back() == '\0') key.pop_back();
    return key;
}

SortKey keyOf(const VARIANT& v, bool caseSensitive) {
    SortKey key;
    switch (V_VT(&v)) {
    case VT_NULL: key.rank = RankNull; break;
    case VT_EMPTY: key.rank = RankEmpty; break;
    case VT_BSTR:
        key.rank = RankText;
        key.text = sortKeyOf(V_BSTR(&v), caseSensitive);
        break;
    case VT_I1: case VT_UI1: case VT_I2: case VT_UI2: case VT_I4: case VT_UI4: case VT_I8: case VT_UI8:
    case VT_INT: case VT_UINT: case VT_R4: case VT_R8: case VT_CY: case VT_DATE: case VT_BOOL: case VT_DECIMAL: {
        VARIANT number;
        VariantInit(&number);
        if (FAILED(VariantChangeType(&number, const_cast<VARIANT*>(&v), 0, VT_R8))) break;
        key.number = V_R8(&number);
        key.rank = std::isnan(key.number) ? RankNotANumber : RankNumber;
        break;
    }
    default: break;
    }
    return key;
}

bool keyLess(const SortKey& a, const SortKey& b) {
    if (a.rank != b.rank) return a.rank < b.rank;
    if (a.rank == RankNumber) return a.number < b.number;
    if (a.rank == RankText) return a.text < b.text;  // byte by byte, as unsigned
    return false;
}

// The array a Variant holds, for changes in place; null for an unsized one.
SAFEARRAY* arrayIn(const VARIANT& v, VARTYPE* type = nullptr) {
    ArrayView view(v);
    if (type) *type = view.elementType();
    return view.get();
}

// ---- growing ----

// The host's variable a parameter reaches, through references to Variants.
VARIANT& variableOf(VARIANT& param) {
    VARIANT* v = &param;
    while (V_VT(v) == (VT_BYREF | VT_VARIANT) && V_VARIANTREF(v)) v = V_VARIANTREF(v);
    return *v;
}

// A value as an element of an array of this type holds it: a Variant as it is (an object
// as the object), else converted (errors 13, 6).
Variant asElement(const VARIANT& value, VARTYPE type) {
    const VARIANT& v = deref(value);
    if (type == VT_VARIANT) return Variant::copyOf(v);
    if (type == VT_RECORD) raise(err::TypeMismatch);
    return changeType(v, type);
}

void putElement(SAFEARRAY* sa, LONG index, VARTYPE type, Variant& value) {
    VARIANT* v = value.get();
    void* data;
    switch (type) {
    case VT_VARIANT: data = v; break;
    case VT_BSTR: data = V_BSTR(v); break;
    case VT_DISPATCH:
    case VT_UNKNOWN: data = V_UNKNOWN(v); break;
    case VT_DECIMAL: data = &V_DECIMAL(v); break;
    default: data = &V_UI1(v); break;
    }
    check(SafeArrayPutElement(sa, &index, data));
}

// Inserts values before position `at` (nullopt: after the last element) of the
// one-dimensional array in the host's variable; returns the new upper bound.
int32_t insertValues(VARIANT& param, const std::vector<Variant>& values, std::optional<int32_t> at) {
    VARIANT& variable = variableOf(param);
    const VARTYPE vt = V_VT(&variable);
    if (vt == VT_EMPTY) {
        // An Empty variable becomes an array of Variants from 0.
        if (at && *at != 0) raise(err::SubscriptOutOfRange);
        std::vector<Variant> elements;
        for (const Variant& value : values) elements.push_back(asElement(*value, VT_VARIANT));
        SAFEARRAY* sa = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(elements.size()));
        if (!sa) throw std::bad_alloc();
        for (size_t i = 0; i < elements.size(); ++i) putElement(sa, static_cast<LONG>(i), VT_VARIANT, elements[i]);
        V_VT(&variable) = VT_ARRAY | VT_VARIANT;
        V_ARRAY(&variable) = sa;
        return static_cast<int32_t>(elements.size()) - 1;
    }
    if (!(vt & VT_ARRAY)) raise(err::TypeMismatch);
    SAFEARRAY** slot = (vt & VT_BYREF) ? V_ARRAYREF(&variable) : &V_ARRAY(&variable);
    if (!slot) raise(err::TypeMismatch);
    const VARTYPE type = vt & VT_TYPEMASK;
    SAFEARRAY* sa = *slot;
    if (sa && SafeArrayGetDim(sa) != 1) raise(err::InvalidCall);

    // Every value is converted before the array changes.
    std::vector<Variant> elements;
    for (const Variant& value : values) elements.push_back(asElement(*value, type));
    LONG lower = 0, upper = -1;
    if (sa) {
        check(SafeArrayGetLBound(sa, 1, &lower));
        check(SafeArrayGetUBound(sa, 1, &upper));
    }
    const int32_t count = (Checked<int32_t>(upper) - lower + 1).value();
    const int32_t position = at ? *at : (Checked<int32_t>(lower) + count).value();
    if (position < lower || position - lower > count) raise(err::SubscriptOutOfRange);
    const int32_t added = static_cast<int32_t>(elements.size());
    const int32_t newUpper = (Checked<int32_t>(upper) + added).value();
    if (added == 0) return newUpper;

    if (!sa) {
        sa = SafeArrayCreateVector(type, lower, static_cast<ULONG>(added));
        if (!sa) throw std::bad_alloc();
        *slot = sa;
    } else {
        if (sa->cLocks > 0 || (sa->fFeatures & (FADF_FIXEDSIZE | FADF_STATIC | FADF_AUTO | FADF_EMBEDDED)))
            raise(err::ArrayLocked);
        SAFEARRAYBOUND bound{static_cast<ULONG>(count + added), lower};
        const HRESULT hr = SafeArrayRedim(sa, &bound);
        if (hr == DISP_E_ARRAYISLOCKED) raise(err::ArrayLocked);
        check(hr);
        // The elements from the position on move up; the slots they leave are cleared
        // without being freed (their contents now live higher up).
        const size_t size = SafeArrayGetElemsize(sa);
        const size_t from = static_cast<size_t>(position - lower);
        SafeArrayAccess data(sa);
        char* base = data.as<char>();
        std::memmove(base + (from + static_cast<size_t>(added)) * size, base + from * size,
                     (static_cast<size_t>(count) - from) * size);
        std::memset(base + from * size, 0, static_cast<size_t>(added) * size);
    }
    for (int32_t i = 0; i < added; ++i) putElement(sa, position + i, type, elements[static_cast<size_t>(i)]);
    return newUpper;
}

}  // namespace

void forEachElement(const VARIANT& array, const std::function<void(const VARIANT&)>& visit) {
    VARTYPE type = VT_EMPTY;
    SAFEARRAY* sa = arrayIn(array, &type);
    if (!sa) return;
    SafeArrayLockGuard lock(sa);
    size_t total = 1;
    for (UINT d = 1; d <= SafeArrayGetDim(sa); ++d) {
        LONG lower = 0, upper = -1;
        SafeArrayGetLBound(sa, d, &lower);
        SafeArrayGetUBound(sa, d, &upper);
        total *= static_cast<size_t>(std::max<LONGLONG>(0, LONGLONG(upper) - lower + 1));
    }
    const size_t size = SafeArrayGetElemsize(sa);
    const char* base = static_cast<const char*>(sa->pvData);
    for (size_t k = 0; k < total; ++k) visit(viewOfElement(type, base + k * size, size));
}

bool sameText(const VARIANT& element, const VARIANT& value) {
    const VARIANT& e = deref(element);
    const VARIANT& v = deref(value);
    if (isNull(e) || isNull(v)) return isNull(e) && isNull(v);
    auto a = comparableText(e);
    if (!a) return false;
    auto b = comparableText(v);
    return b && equalText(*a, *b, Compare::Text);
}

void sortInPlace(const VARIANT& array, LONG sortType, bool caseSensitive, const VARIANT& column) {
    if (sortType != Ascending && sortType != Descending) raise(err::InvalidCall);
    ArrayView view(array);
    SAFEARRAY* sa = view.get();
    if (!sa) return;
    const long dims = view.dimensions();
    if (dims > 2) raise(err::InvalidCall);
    const long firstRow = view.lbound(1);
    const long rows = view.ubound(1) - firstRow + 1;
    long firstColumn = 0, lastColumn = 0, keyColumn = 0;
    if (dims == 2) {
        firstColumn = view.lbound(2);
        lastColumn = view.ubound(2);
        keyColumn = isMissing(column) ? firstColumn : toInt32(column);
        if (keyColumn < firstColumn || keyColumn > lastColumn) raise(err::SubscriptOutOfRange);
    }
    if (rows <= 1) return;

    SafeArrayLockGuard lock(sa);
    const VARTYPE type = view.elementType();
    const size_t size = SafeArrayGetElemsize(sa);
    auto at = [&](long row, long col) {
        LONG index[2] = {row, col};
        void* p = nullptr;
        check(SafeArrayPtrOfIndex(sa, index, &p));
        return static_cast<char*>(p);
    };

    std::vector<SortKey> keys(static_cast<size_t>(rows));
    for (long r = 0; r < rows; ++r)
        keys[static_cast<size_t>(r)] = keyOf(viewOfElement(type, at(firstRow + r, keyColumn), size), caseSensitive);
    std::vector<size_t> order(static_cast<size_t>(rows));
    std::iota(order.begin(), order.end(), size_t{0});
    const bool descending = sortType == Descending;
    std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) {
        return descending ? keyLess(keys[b], keys[a]) : keyLess(keys[a], keys[b]);
    });

    // Each column's elements move to their rows' new places, as they are.
    std::vector<char> moved(static_cast<size_t>(rows) * size);
    for (long col = firstColumn; col <= lastColumn; ++col) {
        for (long r = 0; r < rows; ++r)
            std::memcpy(&moved[static_cast<size_t>(r) * size], at(firstRow + static_cast<long>(order[static_cast<size_t>(r)]), col), size);
        for (long r = 0; r < rows; ++r) std::memcpy(at(firstRow + r, col), &moved[static_cast<size_t>(r) * size], size);
    }
}

Variant sortedCopy(const VARIANT& array, LONG sortType, bool caseSensitive, const VARIANT& column) {
    if (sortType != Ascending && sortType != Descending) raise(err::InvalidCall);
    VARTYPE type = VT_EMPTY;
    SAFEARRAY* sa = arrayIn(array, &type);
    Variant copy;
    if (!sa) return Variant::copyOf(deref(array));  // an unsized array, as it is
    SAFEARRAY* duplicate = nullptr;
    check(SafeArrayCopy(sa, &duplicate));
    V_VT(copy.get()) = static_cast<VARTYPE>(VT_ARRAY | type);
    V_ARRAY(copy.get()) = duplicate;
    sortInPlace(*copy, sortType, caseSensitive, column);
    return copy;
}

int32_t countElements(const VARIANT& array, const VARIANT* findValue) {
    if (!isArray(deref(array))) return 0;
    int32_t count = 0;
    forEachElement(array, [&](const VARIANT& element) {
        if (!findValue || sameText(element, *findValue)) count = (Checked<int32_t>(count) + 1).value();
    });
    return count;
}

int32_t append(VARIANT& variable, const VARIANT& value, bool unique) {
    const VARIANT& held = deref(variable);
    if (unique && isArray(held)) {
        ArrayView view(held);
        if (view.get() && view.dimensions() == 1) {
            int32_t index = view.lbound(1);
            std::optional<int32_t> found;
            forEachElement(held, [&](const VARIANT& element) {
                if (!found && sameText(element, value)) found = index;
                ++index;
            });
            if (found) return *found;
        }
    }
    return insertValues(variable, {Variant::copyOf(deref(value))}, std::nullopt);
}

int32_t insert(VARIANT& variable, const VARIANT& paste, const VARIANT& index) {
    std::vector<Variant> values;
    const VARIANT& pasted = deref(paste);
    if (isArray(pasted))
        forEachElement(pasted, [&](const VARIANT& element) { values.push_back(Variant::copyOf(element)); });
    else
        values.push_back(Variant::copyOf(pasted));
    std::optional<int32_t> at;
    if (!isMissing(index)) at = toInt32(index);
    return insertValues(variable, values, at);
}

}  // namespace vx::arrays
