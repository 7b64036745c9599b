// Host variables passed to typed by-reference parameters: the stand-ins ByRefArguments
// gives them, and what goes back into the variables.
#include "core/dispatch/ByRefArguments.h"
#include "core/dispatch/TypeLibrary.h"

#include "TestSupport.h"
#include "Vx_Main.h"

using namespace vx;

namespace {

// The arguments of a call in call order, as a host lays them out (last first).
struct Call {
    explicit Call(std::vector<Variant> inOrder) : args(inOrder.rbegin(), inOrder.rend()) {
        for (Variant& a : args) raw.push_back(*a.get());
        params = DISPPARAMS{raw.data(), nullptr, static_cast<UINT>(raw.size()), 0};
    }
    std::vector<Variant> args;
    std::vector<VARIANTARG> raw;
    DISPPARAMS params;
};

const DISPID readDWord = 0x6003000D;  // clsReg.ReadDWord(Key, SubKey, sName, [lDefault] As Long)
const WORD methodCall = DISPATCH_METHOD | DISPATCH_PROPERTYGET;

}  // namespace

TEST(ByRefArguments, AVariableGetsAStandInOfTheParametersType) {
    Variant variable = Variant::fromShort(5);  // VBScript keeps small numbers as Integer
    Call c({Variant::fromLong(1), Variant::fromText(L"k"), Variant::fromText(L"n"), vxtest::byRef(variable)});
    ByRefArguments byRef(typeInfoOf(IID__clsReg), readDWord, methodCall, &c.params);
    ASSERT_EQ(byRef.count(), 1u);
    const VARIANTARG& standIn = byRef.params()->rgvarg[0];
    ASSERT_EQ(V_VT(&standIn), VT_BYREF | VT_I4);
    EXPECT_EQ(*V_I4REF(&standIn), 5);
    // The other arguments pass as they came.
    EXPECT_EQ(V_VT(&byRef.params()->rgvarg[1]), VT_BSTR);
    // Untouched, the variable keeps its own type ...
    byRef.writeBack();
    EXPECT_EQ(variable.type(), VT_I2);
    // ... changed, it receives what the member left.
    *V_I4REF(&standIn) = 42;
    byRef.writeBack();
    EXPECT_EQ(variable.type(), VT_I4);
    EXPECT_EQ(V_I4(variable.get()), 42);
}

TEST(ByRefArguments, WhatCannotBeConvertedIsLeftToTheDispatch) {
    Variant text = Variant::fromText(L"not a number");
    Call c({Variant::fromLong(1), Variant::fromText(L"k"), Variant::fromText(L"n"), vxtest::byRef(text)});
    ByRefArguments byRef(typeInfoOf(IID__clsReg), readDWord, methodCall, &c.params);
    EXPECT_EQ(byRef.count(), 0u);
    EXPECT_EQ(byRef.params(), &c.params);
    auto reg = vxtest::createObject(CLSID_clsReg);
    EXPECT_EQ(vxtest::call(reg.get(), L"ReadDWord", {Variant::fromLong(1), Variant::fromText(L"k"), Variant::fromText(L"n"),
                                                     vxtest::byRef(text)})
                  .errorNumber(),
              13);
    // A Variant by reference needs no stand-in: the dispatch takes it as it is.
    Variant flag = Variant::fromBool(true);
    Call v({Variant::fromText(L"path"), vxtest::byRef(flag)});
    EXPECT_EQ(ByRefArguments(typeInfoOf(IID__clsReg), 0x60030007, methodCall, &v.params).count(), 0u);
}

TEST(ByRefArguments, ObjectsAndUnsetVariables) {
    auto keys = vxtest::createObject(CLSID_cRegKeys);
    Variant list = Variant::fromDispatch(keys.get());
    Call c({vxtest::byRef(list), Variant::fromText(L"a")});
    ByRefArguments byRef(typeInfoOf(IID__cRegEnumKey), 0x60030001, methodCall, &c.params);
    ASSERT_EQ(byRef.count(), 1u);
    ASSERT_EQ(V_VT(&byRef.params()->rgvarg[1]), VT_BYREF | VT_DISPATCH);
    EXPECT_EQ(*V_DISPATCHREF(&byRef.params()->rgvarg[1]), keys.get());

    Variant unset;  // a variable never assigned stands for Nothing
    Call e({vxtest::byRef(unset), Variant::fromText(L"a")});
    ByRefArguments empty(typeInfoOf(IID__cRegEnumKey), 0x60030001, methodCall, &e.params);
    ASSERT_EQ(empty.count(), 1u);
    EXPECT_EQ(*V_DISPATCHREF(&empty.params()->rgvarg[1]), nullptr);
    empty.writeBack();
    EXPECT_EQ(unset.type(), VT_EMPTY);
}
