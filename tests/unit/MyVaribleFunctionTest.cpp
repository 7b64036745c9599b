// Ds_MyVaribleFunction: what the host tests cannot reach easily. The skipping of failed
// steps in GetVar, the order in which IsEqute reads and fails, typed references, bounds
// beyond an Integer, the key state, and calls through the interface.
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/SafeArray.h"
#include "text/MyVaribleFunction.h"

#include "TestSupport.h"
#include "Vx_Main.h"

using namespace vx;
using vxtest::byRef;
using vxtest::call;

namespace {

Variant text(const wchar_t* s) { return Variant::fromText(s); }
Variant num(long n) { return Variant::fromLong(n); }
Variant array(std::vector<Variant> items) { return makeVariantArray(items); }

// An array of n Empty Variants from the given lower bound; n 0 with no bound: never sized.
Variant arrayFrom(long lower, unsigned long n) {
    SAFEARRAYBOUND bound{n, lower};
    Variant out;
    V_VT(out.get()) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(out.get()) = n ? SafeArrayCreate(VT_VARIANT, 1, &bound) : nullptr;
    return out;
}

struct Helper {
    ComPtr<IDispatch> object = vxtest::createObject(CLSID_Ds_MyVaribleFunction);
    // GetVar's result as text, "<Empty>" for Empty; it never raises.
    std::wstring getVar(std::vector<Variant> args) {
        auto r = call(object.get(), L"GetVar", std::move(args));
        EXPECT_EQ(r.errorNumber(), 0);
        return isEmpty(*r.value) ? L"<Empty>" : vxtest::textOf(r.value);
    }
    // IsEqute's answer (1 or 0), or the error number it raised (negated).
    int isEqute(std::vector<Variant> args) {
        auto r = call(object.get(), L"IsEqute", std::move(args));
        return r.errorNumber() ? -r.errorNumber() : (toBool(*r.value) ? 1 : 0);
    }
};

const Variant kArray = num(2), kJustCount = num(3), kJustText = num(4), kFind = num(7);

}  // namespace

TEST(MyVaribleFunction, GetVarSkipsEveryStepThatFails) {
    Helper h;
    const Variant comma = text(L","), slash = text(L"/");
    // Indexes outside the fields fail one by one: the others are still joined.
    EXPECT_EQ(h.getVar({text(L"a/b/c/d"), num(-3), slash, num(5)}), L"a/b/c/d");
    EXPECT_EQ(h.getVar({text(L"a/b/c/d"), num(1), slash, num(6), num(2000000000)}), L"b/c/d");
    EXPECT_EQ(h.getVar({text(L"a/b/c/d"), num(3), slash, num(6), num(1)}), L"<Empty>");
    // Array elements that cannot be text are skipped; Null adds only its separator; rows
    // are read from 0, so those below the lower bound do not exist.
    EXPECT_EQ(h.getVar({array({text(L"a"), array({}), Variant::null(), text(L"c")}), num(-1)}), L"a,,c");
    EXPECT_EQ(h.getVar({arrayFrom(1, 2), num(-1), text(L"-")}), L"-");
    // Without a separator to cut, a Null one joins with nothing; an array one fails every step.
    EXPECT_EQ(h.getVar({array({text(L"a"), text(L"b")}), num(-1), Variant::null()}), L"ab");
    EXPECT_EQ(h.getVar({array({text(L"a"), text(L"b")}), num(-1), array({})}), L"<Empty>");
    EXPECT_EQ(h.getVar({text(L"a,b"), num(0), text(L""), num(5)}), L"a,b");  // one field, nothing to cut
    // Nothing raises: Null text, an index or a last index that is not a number, an object
    // without a default value, Nothing.
    for (auto args : std::vector<std::vector<Variant>>{
             {Variant::null()}, {text(L"a,b"), text(L"x")}, {text(L"a,b"), Variant::fromDouble(1e20)},
             {text(L"a,b"), num(0), comma, num(6), text(L"x")}, {Variant::fromDispatch(h.object.get())},
             {Variant::fromDispatch(nullptr)}, {text(L"a,b"), num(0), Variant::null()}})
        EXPECT_EQ(h.getVar(args), L"<Empty>");
}

TEST(MyVaribleFunction, IsEquteReadsArraysLazilyAndFailsWhereAScanWould) {
    Helper h;
    // An element is read only when something is compared with it.
    EXPECT_EQ(h.isEqute({array({text(L"a")}), array({text(L"a"), array({})}), kArray}), 0);
    EXPECT_EQ(h.isEqute({array({}), array({array({})}), kArray}), 0);
    EXPECT_EQ(h.isEqute({array({text(L"a")}), array({array({})}), kArray}), -13);
    // A Null element equals nothing, but the others are still read.
    EXPECT_EQ(h.isEqute({array({Variant::null()}), array({array({})}), kArray}), -13);
    EXPECT_EQ(h.isEqute({array({num(1), Variant::null()}), array({text(L"1"), Variant::null()}), kArray}), 0);
    // Elements are read from index 0; an unsized array has no bound.
    EXPECT_EQ(h.isEqute({arrayFrom(1, 2), arrayFrom(1, 2), kJustCount}), -9);
    EXPECT_EQ(h.isEqute({arrayFrom(0, 0), array({text(L"a")}), kArray}), -9);
    EXPECT_EQ(h.isEqute({Variant::null(), array({Variant::null()}), kJustText}), 1);
    EXPECT_EQ(h.isEqute({array({}), array({text(L"x")}), kJustText}), -13);
}

TEST(MyVaribleFunction, GoFindWritesThroughTypedReferencesToo) {
    Helper h;
    // A host variable declared As String arrives as a typed reference.
    BSTR slot = SysAllocString(L"MiXeD");
    Variant ref;
    V_VT(ref.get()) = VT_BYREF | VT_BSTR;
    V_BSTRREF(ref.get()) = &slot;
    Variant find = text(L"X");
    EXPECT_EQ(h.isEqute({ref, byRef(find), kFind}), 1);
    EXPECT_STREQ(slot, L"mixed");
    SysFreeString(slot);
    // Null stays Null; nothing is found in empty text; the first variable is written
    // before the second fails.
    Variant null = Variant::null(), c = text(L"C"), empty = text(L""), first = text(L"UP"), bad = array({});
    EXPECT_EQ(h.isEqute({byRef(null), byRef(c), kFind}), 0);
    EXPECT_TRUE(isNull(*null));
    EXPECT_EQ(h.isEqute({byRef(empty), byRef(empty), kFind}), 0);
    EXPECT_EQ(h.isEqute({byRef(first), byRef(bad), kFind}), -13);
    EXPECT_EQ(vxtest::textOf(first), L"up");
}

TEST(MyVaribleFunction, CountUBoundOfBoundsBeyondAnInteger) {
    Helper h;
    auto bound = [&](Variant v) {
        auto r = call(h.object.get(), L"CountUBound", {byRef(v)});
        EXPECT_EQ(r.value.type(), VT_I2);
        return vxtest::longOf(r.value);
    };
    EXPECT_EQ(bound(arrayFrom(32767, 1)), 32767);
    EXPECT_EQ(bound(arrayFrom(32767, 2)), -1);
    EXPECT_EQ(bound(arrayFrom(-40000, 1)), -1);
    // A byte array held by a typed reference.
    unsigned char bytes[4] = {1, 2, 3, 4};
    Variant data = makeByteArray(bytes, 4);
    SAFEARRAY* sa = V_ARRAY(data.get());
    Variant ref;
    V_VT(ref.get()) = VT_BYREF | VT_ARRAY | VT_UI1;
    V_ARRAYREF(ref.get()) = &sa;
    EXPECT_EQ(bound(ref), 3);
}

TEST(MyVaribleFunction, GoIsNullOfAnOmittedValue) {
    Helper h;
    auto r = call(h.object.get(), L"GoIsNull", {Variant::missing(), text(L"x")});
    EXPECT_EQ(vxtest::textOf(r.value), L"x");
    r = call(h.object.get(), L"GoIsNull", {Variant::missing()});
    EXPECT_EQ(r.value.type(), VT_I2);  // the declared default, an Integer
}

TEST(MyVaribleFunction, IsKeyTellsWhetherTheKeyIsDownNow) {
    Helper h;
    auto isKey = [&](WORD vk) { return toBool(*call(h.object.get(), L"IsKey", {num(vk)}).value); };
    auto press = [](WORD vk, bool down) {
        INPUT in{};
        in.type = INPUT_KEYBOARD;
        in.ki.wVk = vk;
        in.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
        SendInput(1, &in, sizeof(in));
    };
    const WORD key = VK_F24;  // a key no other test presses
    EXPECT_FALSE(isKey(key));
    press(key, true);
    EXPECT_TRUE(isKey(key));
    EXPECT_TRUE(isKey(key));  // still down
    press(key, false);
    EXPECT_FALSE(isKey(key));  // pressed since the last query, but up now: only the top bit counts
}

TEST(MyVaribleFunction, ThroughTheInterface) {
    auto helper = vxtest::createObject(CLSID_Ds_MyVaribleFunction).query<_Ds_MyVaribleFunction>();
    ASSERT_TRUE(helper);
    Variant path = text(L"C:\\dir\\file.txt"), index = num(0), sep = text(L"\\"), last = num(2);
    Variant missing = Variant::missing();
    LONG mode = MyVaribleFunction::LeftPathFull;
    VARIANT out;
    ASSERT_EQ(helper->GetVar(path.get(), index.get(), sep.get(), &mode, last.get(), &out), S_OK);
    EXPECT_EQ(vxtest::textOf(Variant::take(out)), L"C:\\dir");
    // Omitted by-reference arguments may be null or carry the missing marker.
    ASSERT_EQ(helper->GetVar(text(L"p,q").get(), nullptr, missing.get(), nullptr, nullptr, &out), S_OK);
    EXPECT_EQ(vxtest::textOf(Variant::take(out)), L"p");
    VARIANT_BOOL same = VARIANT_TRUE;
    LONG arrayMode = MyVaribleFunction::GoArray;
    EXPECT_EQ(helper->IsEqute(path.get(), path.get(), &arrayMode, &same), runtimeHresult(13));
    EXPECT_EQ(same, VARIANT_FALSE);
}
