// Ds_MyVaribleFunction with what a script cannot make: arrays that do not start at 0,
// bounds beyond an Integer, typed references, a key held down, null pointers through the
// interface. The rest is checked from a host (tests/host/myvariblefunction.vbs).
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/SafeArray.h"
#include "Vx_MainEnums.h"
#include "text/MyVaribleFunction.h"

#include "TestSupport.h"
#include "Vx_Main.h"

using namespace vx;
using vxtest::byRef;
using vxtest::call;

namespace {

Variant text(const wchar_t* s) { return Variant::fromText(s); }
Variant num(long n) { return Variant::fromLong(n); }

// An array of n Empty Variants from the given lower bound.
Variant arrayFrom(long lower, unsigned long n) {
    SAFEARRAYBOUND bound{n, lower};
    Variant out;
    V_VT(out.get()) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(out.get()) = SafeArrayCreate(VT_VARIANT, 1, &bound);
    return out;
}

}  // namespace

TEST(MyVaribleFunction, ArraysAreReadFromIndexZeroAndBoundsMustFitAnInteger) {
    auto h = vxtest::createObject(CLSID_Ds_MyVaribleFunction);
    // Rows below the lower bound do not exist: GetVar skips them, IsEqute fails on them.
    EXPECT_EQ(vxtest::textOf(call(h.get(), L"GetVar", {arrayFrom(1, 2), num(-1), text(L"-")}).value), L"-");
    EXPECT_EQ(call(h.get(), L"IsEqute", {arrayFrom(1, 2), arrayFrom(1, 2), num(3)}).errorNumber(), 9);
    auto bound = [&](Variant v) {
        auto r = call(h.get(), L"CountUBound", {byRef(v)});
        EXPECT_EQ(r.value.type(), VT_I2);
        return vxtest::longOf(r.value);
    };
    EXPECT_EQ(bound(arrayFrom(32767, 1)), 32767);
    EXPECT_EQ(bound(arrayFrom(32767, 2)), -1);
    EXPECT_EQ(bound(arrayFrom(-40000, 1)), -1);
    // A byte array held by a typed reference (a variable declared as a Byte array).
    unsigned char bytes[4] = {1, 2, 3, 4};
    Variant data = makeByteArray(bytes, 4);
    SAFEARRAY* sa = V_ARRAY(data.get());
    Variant ref;
    V_VT(ref.get()) = VT_BYREF | VT_ARRAY | VT_UI1;
    V_ARRAYREF(ref.get()) = &sa;
    EXPECT_EQ(bound(ref), 3);
}

TEST(MyVaribleFunction, GoFindWritesThroughTypedReferences) {
    // A host variable declared As String arrives as a typed reference; the first variable
    // is written before the second fails.
    auto h = vxtest::createObject(CLSID_Ds_MyVaribleFunction);
    BSTR slot = SysAllocString(L"MiXeD");
    Variant ref;
    V_VT(ref.get()) = VT_BYREF | VT_BSTR;
    V_BSTRREF(ref.get()) = &slot;
    Variant find = text(L"X");
    EXPECT_TRUE(vx::toBool(*call(h.get(), L"IsEqute", {ref, byRef(find), num(7)}).value));
    EXPECT_STREQ(slot, L"mixed");
    SysFreeString(slot);
    Variant first = text(L"UP"), bad = makeVariantArray({});
    EXPECT_EQ(call(h.get(), L"IsEqute", {byRef(first), byRef(bad), num(7)}).errorNumber(), 13);
    EXPECT_EQ(vxtest::textOf(first), L"up");
}

TEST(MyVaribleFunction, IsKeyTellsWhetherTheKeyIsDownNow) {
    auto h = vxtest::createObject(CLSID_Ds_MyVaribleFunction);
    auto isKey = [&](WORD vk) { return toBool(*call(h.get(), L"IsKey", {num(vk)}).value); };
    auto press = [](WORD vk, bool down) {
        INPUT in{};
        in.type = INPUT_KEYBOARD;
        in.ki.wVk = vk;
        in.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
        SendInput(1, &in, sizeof(in));
    };
    const WORD key = VK_F24;  // a key no other test presses
    press(key, true);
    EXPECT_TRUE(isKey(key));
    EXPECT_TRUE(isKey(key));  // still down
    press(key, false);
    EXPECT_FALSE(isKey(key));  // pressed since the last query, but up now: only the top bit counts
}

TEST(MyVaribleFunction, ThroughTheInterface) {
    // Other classes call the helper this way; omitted by-reference arguments may be null.
    auto helper = vxtest::createObject(CLSID_Ds_MyVaribleFunction).query<_Ds_MyVaribleFunction>();
    ASSERT_TRUE(helper);
    Variant path = text(L"C:\\dir\\file.txt"), index = num(0), sep = text(L"\\"), last = num(2);
    Variant missing = Variant::missing();
    LONG mode = LeftPathFull;
    VARIANT out;
    ASSERT_EQ(helper->GetVar(path.get(), index.get(), sep.get(), &mode, last.get(), &out), S_OK);
    EXPECT_EQ(vxtest::textOf(Variant::take(out)), L"C:\\dir");
    ASSERT_EQ(helper->GetVar(text(L"p,q").get(), nullptr, missing.get(), nullptr, nullptr, &out), S_OK);
    EXPECT_EQ(vxtest::textOf(Variant::take(out)), L"p");
    VARIANT_BOOL same = VARIANT_TRUE;
    LONG arrayMode = GoArray;
    EXPECT_EQ(helper->IsEqute(path.get(), path.get(), &arrayMode, &same), runtimeHresult(13));
    EXPECT_EQ(same, VARIANT_FALSE);
}
