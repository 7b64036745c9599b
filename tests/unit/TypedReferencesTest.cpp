// Host variables (references to Variants) passed to parameters declared as typed
// references: converted for the call, written back when the member changes them.
#include "core/dispatch/TypedReferences.h"
#include "core/dispatch/TypeLibrary.h"
#include "core/runtime/SafeArray.h"

#include "TestSupport.h"
#include "Vx_Main.h"

using namespace vx;
using vxtest::byRef;

namespace {

// The let of AlphaAnd takes a String by reference.
constexpr DISPID alphaAnd = 0x68030000;

ComPtr<ITypeInfo> moneyInfo() { return ComPtr<ITypeInfo>::adopt(typeInfoOf(IID__Ds_AlphaMoney)); }

struct PutParams {
    explicit PutParams(const Variant& value) : arg(*value) {}
    VARIANT arg;
    DISPID named = DISPID_PROPERTYPUT;
    DISPPARAMS params{&arg, &named, 1, 1};
};

}  // namespace

TEST(TypedReferences, AVariableBecomesATypedTemporaryAndChangesAreWrittenBack) {
    auto ti = moneyInfo();
    ASSERT_TRUE(ti);
    Variant variable = Variant::fromText(L"before");
    PutParams call(byRef(variable));
    TypedReferences refs(ti.get(), alphaAnd, DISPATCH_PROPERTYPUT, &call.params);
    DISPPARAMS* passed = refs.params();
    ASSERT_NE(passed, &call.params);  // the caller's parameters are not touched
    EXPECT_EQ(V_VT(&call.arg), VT_BYREF | VT_VARIANT);
    ASSERT_EQ(V_VT(&passed->rgvarg[0]), VT_BYREF | VT_BSTR);
    EXPECT_EQ(std::wstring(viewOf(*V_BSTRREF(&passed->rgvarg[0]))), L"before");
    EXPECT_EQ(passed->cNamedArgs, 1u);
    // What a member writes into its by-reference parameter reaches the host's variable.
    SysFreeString(*V_BSTRREF(&passed->rgvarg[0]));
    *V_BSTRREF(&passed->rgvarg[0]) = SysAllocString(L"after");
    refs.writeBack();
    EXPECT_EQ(variable.type(), VT_BSTR);
    EXPECT_EQ(vxtest::textOf(variable), L"after");
}

TEST(TypedReferences, UnchangedValuesLeaveTheVariableAsItWas) {
    auto ti = moneyInfo();
    Variant number = Variant::fromLong(42);
    PutParams call(byRef(number));
    TypedReferences refs(ti.get(), alphaAnd, DISPATCH_PROPERTYPUT, &call.params);
    ASSERT_EQ(V_VT(&refs.params()->rgvarg[0]), VT_BYREF | VT_BSTR);
    EXPECT_EQ(std::wstring(viewOf(*V_BSTRREF(&refs.params()->rgvarg[0]))), L"42");
    refs.writeBack();
    EXPECT_EQ(number.type(), VT_I4);
    EXPECT_EQ(vxtest::longOf(number), 42);
}

TEST(TypedReferences, WhatDoesNotConvertIsLeftForInvokeToReport) {
    auto ti = moneyInfo();
    for (Variant value : {Variant::null(), makeVariantArray({Variant::fromLong(1)})}) {
        PutParams call(byRef(value));
        TypedReferences refs(ti.get(), alphaAnd, DISPATCH_PROPERTYPUT, &call.params);
        EXPECT_EQ(refs.params(), &call.params);
    }
    // Values (not references) and Variant parameters need no help.
    PutParams literal(Variant::fromText(L"x"));
    TypedReferences none(ti.get(), alphaAnd, DISPATCH_PROPERTYPUT, &literal.params);
    EXPECT_EQ(none.params(), &literal.params);
    TypedReferences noParams(ti.get(), alphaAnd, DISPATCH_PROPERTYPUT, nullptr);
    EXPECT_EQ(noParams.params(), nullptr);

    auto m = vxtest::createObject(CLSID_Ds_AlphaMoney);
    Variant null = Variant::null();
    EXPECT_EQ(vxtest::put(m.get(), L"AlphaAnd", byRef(null)).errorNumber(), 13);
}

TEST(TypedReferences, AReferenceToAReferenceReachesTheVariable) {
    auto m = vxtest::createObject(CLSID_Ds_AlphaMoney);
    Variant inner = Variant::fromText(L" + ");
    Variant outer = byRef(inner);
    EXPECT_EQ(vxtest::put(m.get(), L"AlphaAnd", byRef(outer)).hr, S_OK);
    EXPECT_EQ(vxtest::textOf(vxtest::get(m.get(), L"AlphaAnd").value), L" + ");
}
