// The runtime layer: text functions, Variants and arrays, the ANSI bridge, late
// binding and the message-loop yield.
#include "core/runtime/Ansi.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/LateBound.h"
#include "core/runtime/MessageLoop.h"
#include "core/runtime/SafeArray.h"
#include "core/runtime/Text.h"

#include "TestSupport.h"
#include "Vx_Main.h"

using namespace vx;

TEST(Text, SplitFollowsTheRuntime) {
    EXPECT_EQ(split(L"a,b,,c", L","), (std::vector<std::wstring>{L"a", L"b", L"", L"c"}));
    EXPECT_EQ(split(L"a,b,", L","), (std::vector<std::wstring>{L"a", L"b", L""}));
    EXPECT_TRUE(split(L"", L",").empty());  // empty text: no fields at all
    EXPECT_EQ(split(L"abc", L""), (std::vector<std::wstring>{L"abc"}));
    EXPECT_EQ(split(L"a::b::c", L"::"), (std::vector<std::wstring>{L"a", L"b", L"c"}));
    EXPECT_EQ(split(L"a,b,c", L",", 2), (std::vector<std::wstring>{L"a", L"b,c"}));
    EXPECT_EQ(split(L"aXbxc", L"x"), (std::vector<std::wstring>{L"aXb", L"c"}));
    EXPECT_EQ(split(L"aXbxc", L"x", -1, Compare::Text), (std::vector<std::wstring>{L"a", L"b", L"c"}));
    EXPECT_EQ(join({L"a", L"", L"c"}, L"/"), L"a//c");
}

TEST(Text, PositionsCountFromOne) {
    EXPECT_EQ(inStr(L"hello", L"l"), 3);
    EXPECT_EQ(inStr(4, L"hello", L"l"), 4);
    EXPECT_EQ(inStr(L"hello", L"L"), 0);
    EXPECT_EQ(inStr(L"hello", L"L", Compare::Text), 3);
    EXPECT_EQ(inStr(L"hello", L""), 1);
    EXPECT_EQ(inStr(L"", L""), 0);
    EXPECT_EQ(inStr(9, L"hello", L"l"), 0);
    EXPECT_RUNTIME_ERROR(inStr(0, L"hello", L"l"), 5);
    EXPECT_EQ(mid(L"hello", 2, 3), L"ell");
    EXPECT_EQ(mid(L"hello", 4), L"lo");
    EXPECT_EQ(mid(L"hello", 9), L"");
    EXPECT_RUNTIME_ERROR(mid(L"hello", 0), 5);
    EXPECT_EQ(left(L"hello", 2), L"he");
    EXPECT_EQ(right(L"hello", 2), L"lo");
    EXPECT_EQ(right(L"hi", 5), L"hi");
    EXPECT_RUNTIME_ERROR(left(L"hello", -1), 5);
    EXPECT_RUNTIME_ERROR(right(L"hello", -1), 5);
}

TEST(Text, CaseAndTrim) {
    EXPECT_EQ(lower(L"ÀbC"), L"àbc");
    EXPECT_EQ(upper(L"àbc"), L"ÀBC");
    EXPECT_EQ(foldCase(L"KeY"), foldCase(L"kEy"));
    EXPECT_TRUE(equalText(L"ABC", L"abc", Compare::Text));
    EXPECT_FALSE(equalText(L"ABC", L"abc", Compare::Binary));
    EXPECT_EQ(trim(L"  a b  "), L"a b");
    EXPECT_EQ(ltrim(L"  a "), L"a ");
    EXPECT_EQ(rtrim(L" a  "), L" a");
    EXPECT_EQ(trim(L"\ta\t"), L"\ta\t");  // only spaces are trimmed
    EXPECT_EQ(replace(L"a-b-c", L"-", L"+"), L"a+b+c");
    EXPECT_EQ(replace(L"aXbx", L"x", L"_", Compare::Text), L"a_b_");
}

TEST(Variant, MissingArgumentsAreRecognisedThroughReferences) {
    Variant m = Variant::missing();
    EXPECT_TRUE(isMissing(*m));
    EXPECT_TRUE(isMissing(*vxtest::byRef(m)));
    EXPECT_FALSE(isMissing(*Variant::empty()));
    EXPECT_FALSE(isMissing(*Variant::null()));
    Variant otherError;
    V_VT(otherError.get()) = VT_ERROR;
    V_ERROR(otherError.get()) = E_FAIL;
    EXPECT_FALSE(isMissing(*otherError));
}

TEST(Variant, AssignToReferenceWritesTheCallersVariable) {
    Variant variable = Variant::fromLong(1);
    Variant ref = vxtest::byRef(variable);
    assignToReference(*ref.get(), *Variant::fromText(L"changed"));
    EXPECT_EQ(vxtest::textOf(variable), L"changed");

    // A typed reference (a variable declared As Long) receives a converted value.
    LONG typed = 0;
    Variant typedRef;
    V_VT(typedRef.get()) = VT_BYREF | VT_I4;
    V_I4REF(typedRef.get()) = &typed;
    assignToReference(*typedRef.get(), *Variant::fromText(L"41.5"));
    EXPECT_EQ(typed, 42);
    EXPECT_RUNTIME_ERROR(assignToReference(*typedRef.get(), *Variant::fromText(L"x")), 13);

    // A value argument is left alone.
    Variant byValue = Variant::fromLong(5);
    assignToReference(*byValue.get(), *Variant::fromLong(6));
    EXPECT_EQ(vxtest::longOf(byValue), 5);
}

TEST(SafeArray, ReadsArraysOfAnyElementType) {
    Variant arr = makeVariantArray({Variant::fromText(L"x"), Variant::fromLong(2)});
    ArrayView view(*arr);
    EXPECT_EQ(view.dimensions(), 1);
    EXPECT_EQ(view.lbound(), 0);
    EXPECT_EQ(view.ubound(), 1);
    EXPECT_EQ(vxtest::textOf(view.at(0)), L"x");
    EXPECT_EQ(vxtest::longOf(view.at(1)), 2);
    EXPECT_RUNTIME_ERROR(view.at(2), 9);
    EXPECT_RUNTIME_ERROR(view.at(0, 0), 9);
    EXPECT_RUNTIME_ERROR(ArrayView(*Variant::fromLong(1)), 13);

    // A two-dimensional array of strings, element (i, j) with i in the first dimension.
    SAFEARRAYBOUND bounds[2] = {{2, 0}, {3, 0}};  // a(0 To 1, 0 To 2)
    SAFEARRAY* sa = SafeArrayCreate(VT_BSTR, 2, bounds);
    for (LONG i = 0; i <= 1; ++i)
        for (LONG j = 0; j <= 2; ++j) {
            LONG idx[2] = {i, j};
            std::wstring s = std::to_wstring(i) + L"," + std::to_wstring(j);
            Bstr b(s);
            SafeArrayPutElement(sa, idx, b.get());
        }
    Variant two;
    V_VT(two.get()) = VT_ARRAY | VT_BSTR;
    V_ARRAY(two.get()) = sa;
    ArrayView grid(*vxtest::byRef(two));
    EXPECT_EQ(grid.dimensions(), 2);
    EXPECT_EQ(grid.ubound(1), 1);
    EXPECT_EQ(grid.ubound(2), 2);
    EXPECT_EQ(vxtest::textOf(grid.at(1, 2)), L"1,2");
    EXPECT_EQ(vxtest::textOf(grid.at(0, 1)), L"0,1");

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

TEST(LateBound, CallsPlatformObjectsByName) {
    LateBound dict = LateBound::create(L"Scripting.Dictionary");
    dict.call(L"Add", {Variant::fromText(L"k"), Variant::fromLong(7)});
    EXPECT_EQ(vxtest::longOf(dict.get(L"Count")), 1);
    EXPECT_EQ(vxtest::longOf(dict.get(L"Item", {Variant::fromText(L"k")})), 7);
}

TEST(LateBound, ErrorsAreTheRuntimes) {
    EXPECT_RUNTIME_ERROR(LateBound::create(L"No.Such.Class"), 429);
    LateBound dict = LateBound::create(L"Scripting.Dictionary");
    EXPECT_RUNTIME_ERROR(dict.call(L"NoSuchMember"), 438);
    EXPECT_RUNTIME_ERROR(LateBound().call(L"Anything"), 91);
    EXPECT_RUNTIME_ERROR(LateBound(*Variant::fromLong(1)), 424);
    // The object's own failure passes on unchanged.
    dict.call(L"Add", {Variant::fromText(L"k"), Variant::fromLong(1)});
    try {
        dict.call(L"Add", {Variant::fromText(L"k"), Variant::fromLong(2)});
        ADD_FAILURE() << "a duplicate key was accepted";
    } catch (const ComError& e) {
        EXPECT_EQ(vxtest::errorNumberOf(e.hresult()), 457);
    }
}

TEST(LateBound, ReachesTheLibrarysOwnClasses) {
    LateBound list(vxtest::createObject(CLSID_Ds_ListCollection).get());
    list.call(L"Add", {Variant::fromLong(1), Variant::fromText(L"one")});
    EXPECT_EQ(vxtest::longOf(list.get(L"Count")), 1);
    try {
        list.call(L"Item", {Variant::fromText(L"two")});
        ADD_FAILURE() << "an unknown key was found";
    } catch (const ComError& e) {
        EXPECT_EQ(vxtest::errorNumberOf(e.hresult()), 5);
        EXPECT_EQ(e.description(), L"Invalid procedure call or argument");
    }
}

namespace {
int messagesSeen = 0;
LRESULT CALLBACK countingProc(HWND h, UINT m, WPARAM w, LPARAM l) {
    if (m == WM_APP) ++messagesSeen;
    return DefWindowProcW(h, m, w, l);
}
}  // namespace

TEST(MessageLoop, OneYieldProcessesEveryPendingMessage) {
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
    unsigned long long before = yieldCount();
    yieldToHost();
    EXPECT_EQ(messagesSeen, 2);
    EXPECT_EQ(yieldCount(), before + 1);
    yieldToHost();  // nothing pending: returns at once
    EXPECT_EQ(yieldCount(), before + 2);
    DestroyWindow(h);
}

TEST(LateBound, BindsObjectsByMoniker) {
    LateBound wmi = LateBound::bind(L"winmgmts:");
    ASSERT_TRUE(wmi);
    Variant systems = wmi.call(L"ExecQuery", {Variant::fromText(L"SELECT * FROM Win32_OperatingSystem")});
    EXPECT_GE(vxtest::longOf(LateBound(*systems).get(L"Count")), 1);
    EXPECT_THROW(LateBound::bind(L"nosuchmoniker:anything"), ComError);
}
