// The runtime layer: text functions, Variants and arrays, the ANSI bridge, late
// binding and the message-loop yield.
#include "core/runtime/Ansi.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/LateBound.h"
#include "core/runtime/MessageLoop.h"
#include "core/runtime/SafeArray.h"
#include "core/runtime/SmallVector.h"
#include "core/runtime/Text.h"

#include "TestSupport.h"
#include "Vx_Main.h"

using namespace vx;
using Fields = std::vector<std::wstring>;

TEST(Text, SplitJoinAndPositionsFollowTheRuntime) {
    EXPECT_EQ(split(L"a,b,,c,", L","), (Fields{L"a", L"b", L"", L"c", L""}));
    EXPECT_TRUE(split(L"", L",").empty());  // empty text: no fields at all
    EXPECT_EQ(split(L"abc", L""), (Fields{L"abc"}));
    EXPECT_EQ(split(L"a::b::c", L"::"), (Fields{L"a", L"b", L"c"}));
    EXPECT_EQ(split(L"a,b,c", L",", 2), (Fields{L"a", L"b,c"}));
    EXPECT_EQ(split(L"aXbxc", L"x"), (Fields{L"aXb", L"c"}));
    EXPECT_EQ(split(L"aXbxc", L"x", -1, Compare::Text), (Fields{L"a", L"b", L"c"}));
    EXPECT_EQ(join({L"a", L"", L"c"}, L"/"), L"a//c");
    EXPECT_EQ(inStr(4, L"hello", L"l"), 4);
    EXPECT_EQ(inStr(L"hello", L"L"), 0);
    EXPECT_EQ(inStr(L"hello", L"L", Compare::Text), 3);
    EXPECT_EQ(inStr(L"hello", L""), 1);
    EXPECT_EQ(inStr(L"", L""), 0);
    EXPECT_EQ(inStr(9, L"hello", L"l"), 0);
    EXPECT_EQ(mid(L"hello", 2, 3), L"ell");
    EXPECT_EQ(mid(L"hello", 9), L"");
    EXPECT_EQ(left(L"hello", 2), L"he");
    EXPECT_EQ(right(L"hi", 5), L"hi");
    EXPECT_RUNTIME_ERROR(inStr(0, L"hello", L"l"), 5);
    EXPECT_RUNTIME_ERROR(mid(L"hello", 0), 5);
    EXPECT_RUNTIME_ERROR(left(L"hello", -1), 5);
    EXPECT_RUNTIME_ERROR(right(L"hello", -1), 5);
}

TEST(Text, CaseAndTrim) {
    EXPECT_EQ(lower(L"\u00c0bC"), L"\u00e0bc");
    EXPECT_EQ(upper(L"\u00e0bc"), L"\u00c0BC");
    EXPECT_TRUE(equalText(L"ABC", L"abc", Compare::Text));
    EXPECT_FALSE(equalText(L"ABC", L"abc", Compare::Binary));
    EXPECT_EQ(trim(L"  a b  "), L"a b");
    EXPECT_EQ(ltrim(L"  a "), L"a ");
    EXPECT_EQ(rtrim(L" a  "), L" a");
    EXPECT_EQ(trim(L"\ta\t"), L"\ta\t");  // only spaces are trimmed
    EXPECT_EQ(replace(L"aXbx", L"x", L"_", Compare::Text), L"a_b_");
}

TEST(Variant, MissingMarkersAndReferences) {
    Variant m = Variant::missing();
    EXPECT_TRUE(isMissing(*vxtest::byRef(m)));
    EXPECT_FALSE(isMissing(*Variant::null()));
    Variant otherError;
    V_VT(otherError.get()) = VT_ERROR;
    V_ERROR(otherError.get()) = E_FAIL;
    EXPECT_FALSE(isMissing(*otherError));

    Variant variable = Variant::fromLong(1);
    assignToReference(*vxtest::byRef(variable).get(), *Variant::fromText(L"changed"));
    EXPECT_EQ(vxtest::textOf(variable), L"changed");
    // A typed reference (a variable declared As Long) receives a converted value.
    LONG typed = 0;
    Variant typedRef;
    V_VT(typedRef.get()) = VT_BYREF | VT_I4;
    V_I4REF(typedRef.get()) = &typed;
    assignToReference(*typedRef.get(), *Variant::fromText(L"41.5"));
    EXPECT_EQ(typed, 42);
    EXPECT_RUNTIME_ERROR(assignToReference(*typedRef.get(), *Variant::fromText(L"x")), 13);
    Variant byValue = Variant::fromLong(5);  // a value argument is left alone
    assignToReference(*byValue.get(), *Variant::fromLong(6));
    EXPECT_EQ(vxtest::longOf(byValue), 5);
}

// The dispatch layer's per-call lists: inside the object up to their size, on the heap
// beyond it, with the elements (texts owned by Variants) carried over unharmed.
TEST(SmallVector, KeepsItsElementsWhenItOutgrowsItsOwnRoom) {
    SmallVector<Variant, 2> values;
    const Variant* inside = values.data();
    for (int i = 0; i < 5; ++i) values.push_back(Variant::fromText(L"text " + std::to_wstring(i)));
    ASSERT_EQ(values.size(), 5u);
    EXPECT_NE(values.data(), inside);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(viewOf(V_BSTR(values[i].get())), L"text " + std::to_wstring(i));
    values.assign(3, Variant::fromLong(7));  // a new size: the texts go, the room stays
    ASSERT_EQ(values.size(), 3u);
    EXPECT_EQ(V_I4(values.back().get()), 7);
    SmallVector<VARIANTARG*, 4> pointers(4);  // value-initialised, as a vector's
    for (VARIANTARG* p : pointers) EXPECT_EQ(p, nullptr);
    values.clear();
    EXPECT_TRUE(values.empty());
}

TEST(SafeArray, ReadsArraysOfAnyElementTypeAndShape) {
    Variant arr = makeVariantArray({Variant::fromText(L"x"), Variant::fromLong(2)});
    ArrayView view(*arr);
    EXPECT_EQ(view.dimensions(), 1);
    EXPECT_EQ(view.ubound(), 1);
    EXPECT_EQ(vxtest::longOf(view.at(1)), 2);
    EXPECT_RUNTIME_ERROR(view.at(2), 9);
    EXPECT_RUNTIME_ERROR(view.at(0, 0), 9);
    EXPECT_RUNTIME_ERROR(ArrayView(*Variant::fromLong(1)), 13);
    // a(0 To 1, 0 To 2) of strings, by reference: element (i, j), i in the first dimension.
    SAFEARRAYBOUND bounds[2] = {{2, 0}, {3, 0}};
    Variant two;
    V_VT(two.get()) = VT_ARRAY | VT_BSTR;
    V_ARRAY(two.get()) = SafeArrayCreate(VT_BSTR, 2, bounds);
    for (LONG i = 0; i <= 1; ++i)
        for (LONG j = 0; j <= 2; ++j) {
            LONG idx[2] = {i, j};
            SafeArrayPutElement(V_ARRAY(two.get()), idx, Bstr(std::to_wstring(i) + L"," + std::to_wstring(j)).get());
        }
    ArrayView grid(*vxtest::byRef(two));
    EXPECT_EQ(grid.dimensions(), 2);
    EXPECT_EQ(grid.ubound(1), 1);
    EXPECT_EQ(grid.ubound(2), 2);
    EXPECT_EQ(vxtest::textOf(grid.at(1, 2)), L"1,2");
    // An unallocated dynamic array has no bounds.
    Variant unallocated;
    V_VT(unallocated.get()) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(unallocated.get()) = nullptr;
    ArrayView none(*unallocated);
    EXPECT_EQ(none.dimensions(), 0);
    EXPECT_RUNTIME_ERROR(none.ubound(), 9);
}

TEST(Ansi, RoundTripsWhatTheCodePageHolds) {
    EXPECT_EQ(fromAnsi(toAnsi(L"plain text")), L"plain text");
    EXPECT_EQ(toAnsi(L"").size(), 0u);
    if (GetACP() == 1252) {
        EXPECT_EQ(toAnsi(L"caf\u00e9"), std::string("caf\xe9"));
        EXPECT_EQ(fromAnsi("caf\xe9"), L"caf\u00e9");
    }
    EXPECT_EQ(cutAtNul(std::string_view("ab\0cd", 5)), "ab");
    AnsiBuffer buffer(8);
    lstrcpyA(buffer.data(), "hi");
    EXPECT_EQ(buffer.text(), L"hi");
    EXPECT_EQ(buffer.size(), 8u);
    EXPECT_EQ(buffer.text(1), L"h");
}

TEST(LateBound, CallsObjectsByNameWithTheRuntimesErrors) {
    LateBound dict = LateBound::create(L"Scripting.Dictionary");
    dict.call(L"Add", {Variant::fromText(L"k"), Variant::fromLong(7)});
    EXPECT_EQ(vxtest::longOf(dict.get(L"Item", {Variant::fromText(L"k")})), 7);
    EXPECT_RUNTIME_ERROR(LateBound::create(L"No.Such.Class"), 429);
    EXPECT_RUNTIME_ERROR(dict.call(L"NoSuchMember"), 438);
    EXPECT_RUNTIME_ERROR(LateBound().call(L"Anything"), 91);
    EXPECT_RUNTIME_ERROR(LateBound(*Variant::fromLong(1)), 424);
    // The object's own failure passes on unchanged, with its text.
    LateBound list(vxtest::createObject(CLSID_Ds_ListCollection).get());
    try {
        list.call(L"Item", {Variant::fromText(L"two")});
        ADD_FAILURE() << "an unknown key was found";
    } catch (const ComError& e) {
        EXPECT_EQ(vxtest::errorNumberOf(e.hresult()), 5);
        EXPECT_EQ(e.description(), L"Invalid procedure call or argument");
    }
    // Objects bound by moniker.
    LateBound wmi = LateBound::bind(L"winmgmts:");
    Variant systems = wmi.call(L"ExecQuery", {Variant::fromText(L"SELECT * FROM Win32_OperatingSystem")});
    EXPECT_GE(vxtest::longOf(LateBound(*systems).get(L"Count")), 1);
    EXPECT_THROW(LateBound::bind(L"nosuchmoniker:anything"), ComError);
}

namespace {
int messagesSeen = 0;
LRESULT CALLBACK countingProc(HWND h, UINT m, WPARAM w, LPARAM l) {
    if (m == WM_APP) ++messagesSeen;
    return DefWindowProcW(h, m, w, l);
}
}  // namespace

TEST(MessageLoop, OneYieldProcessesEveryPendingMessageAndIsCounted) {
    WNDCLASSW wc{};
    wc.lpfnWndProc = countingProc;
    wc.hInstance = GetModuleHandleW(nullptr);
    wc.lpszClassName = L"VxYieldTest";
    RegisterClassW(&wc);
    HWND h = CreateWindowW(L"VxYieldTest", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, wc.hInstance, nullptr);
    ASSERT_TRUE(h);
    messagesSeen = 0;
    PostMessageW(h, WM_APP, 0, 0);
    PostMessageW(h, WM_APP, 0, 0);
    const unsigned long long before = yieldCount();
    yieldToHost();
    EXPECT_EQ(messagesSeen, 2);
    EXPECT_EQ(yieldCount(), before + 1);
    yieldToHost();  // nothing pending: returns at once
    EXPECT_EQ(yieldCount(), before + 2);
    DestroyWindow(h);
}
