// Sorting and the array members of Ds_MyVaribleFunction with arrays a script cannot make:
// typed arrays held by typed references, bounds that do not start at 0, tables, NaN and
// the other number types, fixed and locked arrays. The rest is checked from a host
// (tests/host/helpers_arrays.vbs).
#include "core/runtime/Convert.h"
#include "core/runtime/SafeArray.h"

#include "TestSupport.h"
#include "Vx_Main.h"

#include <cmath>
#include <limits>
#include <string>
#include <vector>

using namespace vx;
using vxtest::byRef;
using vxtest::call;

namespace {

Variant num(long n) { return Variant::fromLong(n); }

// An owned array of one element type, one dimension from lower, filled by put(i, slot).
template <class F>
SAFEARRAY* typedArray(VARTYPE type, long lower, unsigned long n, F put) {
    SAFEARRAYBOUND bound{n, lower};
    SAFEARRAY* sa = SafeArrayCreate(type, 1, &bound);
    for (unsigned long i = 0; i < n; ++i) {
        LONG index = lower + static_cast<LONG>(i);
        void* p = nullptr;
        SafeArrayPtrOfIndex(sa, &index, &p);
        put(i, p);
    }
    return sa;
}

SAFEARRAY* textArray(const std::vector<const wchar_t*>& texts, long lower = 0) {
    return typedArray(VT_BSTR, lower, static_cast<unsigned long>(texts.size()),
                      [&](unsigned long i, void* p) { *static_cast<BSTR*>(p) = SysAllocString(texts[i]); });
}

// A host variable declared as a typed array, as it reaches a by-reference parameter.
Variant typedReference(SAFEARRAY** slot, VARTYPE type) {
    Variant ref;
    V_VT(ref.get()) = static_cast<VARTYPE>(VT_BYREF | VT_ARRAY | type);
    V_ARRAYREF(ref.get()) = slot;
    return ref;
}

Variant holding(SAFEARRAY* sa, VARTYPE type) {
    Variant v;
    V_VT(v.get()) = static_cast<VARTYPE>(VT_ARRAY | type);
    V_ARRAY(v.get()) = sa;
    return v;
}

std::vector<std::wstring> textsOf(SAFEARRAY* sa) {
    std::vector<std::wstring> out;
    LONG lower = 0, upper = -1;
    SafeArrayGetLBound(sa, 1, &lower);
    SafeArrayGetUBound(sa, 1, &upper);
    for (LONG i = lower; i <= upper; ++i) {
        BSTR b = nullptr;
        SafeArrayGetElement(sa, &i, &b);
        out.emplace_back(b ? b : L"");
        SysFreeString(b);
    }
    return out;
}

// The elements of any array as text, every dimension in memory order.
std::vector<std::wstring> elementsOf(const Variant& array) {
    std::vector<std::wstring> out;
    ArrayView view(*array);
    for (long i = view.lbound(1); i <= view.ubound(1); ++i) {
        const Variant e = view.at(i);
        out.push_back(e.type() == VT_EMPTY ? L"<empty>" : e.type() == VT_NULL ? L"<null>" : toText(*e));
    }
    return out;
}

using Texts = std::vector<std::wstring>;

}  // namespace

TEST(MyVaribleFunctionArrays, TypedArraysSortInPlaceStablyIgnoringCase) {
    auto h = vxtest::createObject(CLSID_Ds_MyVaribleFunction);
    SAFEARRAY* sa = textArray({L"b", L"A", L"a", L"B", L"c"}, 3);
    ASSERT_EQ(call(h.get(), L"SetSort", {typedReference(&sa, VT_BSTR)}).errorNumber(), 0);
    EXPECT_EQ(textsOf(sa), (Texts{L"A", L"a", L"b", L"B", L"c"}));  // equal texts keep their order
    LONG lower = 0;
    SafeArrayGetLBound(sa, 1, &lower);
    EXPECT_EQ(lower, 3);
    ASSERT_EQ(call(h.get(), L"SetSort", {typedReference(&sa, VT_BSTR), num(2)}).errorNumber(), 0);
    EXPECT_EQ(textsOf(sa), (Texts{L"c", L"b", L"B", L"A", L"a"}));  // and descending too
    ASSERT_EQ(call(h.get(), L"SetSort", {typedReference(&sa, VT_BSTR), num(1), Variant::fromBool(true)}).errorNumber(), 0);
    EXPECT_EQ(textsOf(sa), (Texts{L"a", L"A", L"b", L"B", L"c"}));  // lower case first when case counts
    SafeArrayDestroy(sa);
}

TEST(MyVaribleFunctionArrays, GetSortArrayCopiesTypeAndBoundsAndLeavesTheArray) {
    auto h = vxtest::createObject(CLSID_Ds_MyVaribleFunction);
    Variant longs = holding(typedArray(VT_I4, -2, 4, [](unsigned long i, void* p) {
                                static const LONG values[] = {30, -5, 12, 0};
                                *static_cast<LONG*>(p) = values[i];
                            }),
                            VT_I4);
    auto r = call(h.get(), L"GetSortArray", {byRef(longs)});
    ASSERT_EQ(r.errorNumber(), 0);
    EXPECT_EQ(r.value.type(), VT_ARRAY | VT_I4);
    EXPECT_EQ(ArrayView(*r.value).lbound(1), -2);
    EXPECT_EQ(elementsOf(r.value), (Texts{L"-5", L"0", L"12", L"30"}));
    EXPECT_EQ(elementsOf(longs), (Texts{L"30", L"-5", L"12", L"0"}));
}

TEST(MyVaribleFunctionArrays, EveryKindOfValueHasItsPlace) {
    // Null, Empty, the numbers of every type by value (NaN after them), texts, then the
    // rest as it came; NaN never upsets the order of the others.
    auto h = vxtest::createObject(CLSID_Ds_MyVaribleFunction);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    Variant currency;
    V_VT(currency.get()) = VT_CY;
    V_CY(currency.get()).int64 = 25000;  // 2.5
    Variant decimal = changeType(*Variant::fromDouble(7.25), VT_DECIMAL);
    Variant date = Variant::fromDate(4.0);
    auto object = vxtest::createObject(CLSID_Ds_XML);
    Variant values = makeVariantArray({Variant::fromText(L"b"), Variant::fromDouble(nan), Variant::fromDouble(3),
                                       Variant::fromDispatch(object.get()), Variant::fromDouble(-inf), decimal, Variant::null(),
                                       Variant::fromText(L"A"), Variant::fromBool(true), currency, Variant(),
                                       Variant::fromDouble(inf), date, Variant::fromDouble(nan)});
    ASSERT_EQ(call(h.get(), L"SetSort", {byRef(values)}).errorNumber(), 0);
    ArrayView view(*values);
    std::vector<VARTYPE> types;
    for (long i = 0; i <= view.ubound(1); ++i) types.push_back(view.at(i).type());
    EXPECT_EQ(types, (std::vector<VARTYPE>{VT_NULL, VT_EMPTY, VT_R8, VT_BOOL, VT_CY, VT_R8, VT_DATE, VT_DECIMAL, VT_R8,
                                           VT_R8, VT_R8, VT_BSTR, VT_BSTR, VT_DISPATCH}));
    EXPECT_EQ(toDouble(*view.at(2)), -inf);
    EXPECT_EQ(toDouble(*view.at(5)), 3.0);
    EXPECT_EQ(toDouble(*view.at(8)), inf);
    EXPECT_TRUE(std::isnan(toDouble(*view.at(9))) && std::isnan(toDouble(*view.at(10))));
    EXPECT_EQ(toText(*view.at(11)), L"A");
}

TEST(MyVaribleFunctionArrays, TablesSortTheirRowsByOneColumn) {
    auto h = vxtest::createObject(CLSID_Ds_MyVaribleFunction);
    SAFEARRAYBOUND bounds[2] = {{3, 1}, {2, 0}};  // rows 1 to 3, columns 0 and 1
    SAFEARRAY* sa = SafeArrayCreate(VT_VARIANT, 2, bounds);
    const wchar_t* names[] = {L"Reza", L"Sara", L"Ali"};
    const long ages[] = {30, 25, 40};
    for (LONG r = 0; r < 3; ++r) {
        LONG name[2] = {r + 1, 0}, age[2] = {r + 1, 1};
        SafeArrayPutElement(sa, name, const_cast<VARIANT*>(Variant::fromText(names[r]).get()));
        SafeArrayPutElement(sa, age, const_cast<VARIANT*>(Variant::fromLong(ages[r]).get()));
    }
    Variant table = holding(sa, VT_VARIANT);
    auto rows = [&](const Variant& t) {
        ArrayView v(*t);
        Texts out;
        for (long r = 1; r <= 3; ++r) out.push_back(toText(*v.at(r, 0)) + L":" + toText(*v.at(r, 1)));
        return out;
    };
    ASSERT_EQ(call(h.get(), L"SetSort", {byRef(table)}).errorNumber(), 0);  // the first column by default
    EXPECT_EQ(rows(table), (Texts{L"Ali:40", L"Reza:30", L"Sara:25"}));
    auto sorted = call(h.get(), L"GetSortArray", {byRef(table), num(1), Variant::fromBool(false), num(1)});
    ASSERT_EQ(sorted.errorNumber(), 0);
    EXPECT_EQ(rows(sorted.value), (Texts{L"Sara:25", L"Reza:30", L"Ali:40"}));
    EXPECT_EQ(rows(table), (Texts{L"Ali:40", L"Reza:30", L"Sara:25"}));
    EXPECT_EQ(call(h.get(), L"SetSort", {byRef(table), num(1), Variant::fromBool(false), num(2)}).errorNumber(), 9);
    EXPECT_EQ(call(h.get(), L"SetSort", {byRef(table), num(3)}).errorNumber(), 5);
    SAFEARRAYBOUND cube[3] = {{2, 0}, {2, 0}, {2, 0}};
    Variant three = holding(SafeArrayCreate(VT_VARIANT, 3, cube), VT_VARIANT);
    EXPECT_EQ(call(h.get(), L"GetSortArray", {byRef(three)}).errorNumber(), 5);
    Variant word = Variant::fromText(L"abc");
    EXPECT_EQ(call(h.get(), L"SetSort", {byRef(word)}).errorNumber(), 13);
    // CountArray counts the elements of every dimension.
    EXPECT_EQ(vxtest::longOf(call(h.get(), L"CountArray", {byRef(table)}).value), 6);
    EXPECT_EQ(vxtest::longOf(call(h.get(), L"CountArray", {byRef(table), Variant::fromText(L"sara")}).value), 1);
}

TEST(MyVaribleFunctionArrays, GrowingKeepsTheElementTypeAndRefusesWhatCannotGrow) {
    auto h = vxtest::createObject(CLSID_Ds_MyVaribleFunction);
    SAFEARRAY* sa = textArray({L"a", L"d"}, 1);
    Variant ref = typedReference(&sa, VT_BSTR);
    auto added = call(h.get(), L"GAdd", {ref, num(5)});
    EXPECT_EQ(vxtest::longOf(added.value), 3);  // counted from the array's own lower bound
    EXPECT_EQ(textsOf(sa), (Texts{L"a", L"d", L"5"}));
    auto pasted = call(h.get(), L"SetArrayPaste", {ref, makeVariantArray({Variant::fromText(L"b"), Variant::fromText(L"c")}), num(2)});
    EXPECT_EQ(vxtest::longOf(pasted.value), 5);
    EXPECT_EQ(textsOf(sa), (Texts{L"a", L"b", L"c", L"d", L"5"}));
    EXPECT_EQ(call(h.get(), L"SetArrayPaste", {ref, Variant::fromText(L"x"), num(0)}).errorNumber(), 9);
    EXPECT_EQ(call(h.get(), L"SetArrayPaste", {ref, Variant::fromText(L"x"), num(7)}).errorNumber(), 9);
    EXPECT_EQ(vxtest::longOf(call(h.get(), L"GAdd", {ref, Variant::fromText(L"B"), Variant::fromBool(true)}).value), 2);
    EXPECT_EQ(textsOf(sa).size(), 5u);
    SafeArrayDestroy(sa);

    // A value the element type cannot hold changes nothing.
    SAFEARRAY* longs = typedArray(VT_I4, 0, 1, [](unsigned long, void* p) { *static_cast<LONG*>(p) = 1; });
    EXPECT_EQ(call(h.get(), L"GAdd", {typedReference(&longs, VT_I4), Variant::fromText(L"x")}).errorNumber(), 13);
    EXPECT_EQ(call(h.get(), L"SetArrayPaste", {typedReference(&longs, VT_I4), makeVariantArray({num(2), Variant::fromDouble(1e12)})}).errorNumber(), 6);
    LONG upper = -1;
    SafeArrayGetUBound(longs, 1, &upper);
    EXPECT_EQ(upper, 0);
    // A locked or fixed array cannot grow; a table cannot either.
    SafeArrayLock(longs);
    EXPECT_EQ(call(h.get(), L"GAdd", {typedReference(&longs, VT_I4), num(2)}).errorNumber(), 10);
    SafeArrayUnlock(longs);
    longs->fFeatures |= FADF_FIXEDSIZE;
    EXPECT_EQ(call(h.get(), L"GAdd", {typedReference(&longs, VT_I4), num(2)}).errorNumber(), 10);
    longs->fFeatures &= ~FADF_FIXEDSIZE;
    SafeArrayDestroy(longs);
    SAFEARRAYBOUND square[2] = {{2, 0}, {2, 0}};
    Variant table = holding(SafeArrayCreate(VT_VARIANT, 2, square), VT_VARIANT);
    EXPECT_EQ(call(h.get(), L"GAdd", {byRef(table), num(1)}).errorNumber(), 5);
    // An unsized typed array gets its first element.
    SAFEARRAY* none = nullptr;
    EXPECT_EQ(vxtest::longOf(call(h.get(), L"GAdd", {typedReference(&none, VT_BSTR), num(7)}).value), 0);
    ASSERT_TRUE(none);
    EXPECT_EQ(textsOf(none), (Texts{L"7"}));
    SafeArrayDestroy(none);
}
