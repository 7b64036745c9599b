// Ds_AlphaMoney in-process: rounding, the gaps and edges of the ranges, amounts a host
// cannot easily pass, and the interface. The host tests (tests/host/alphamoney.vbs) hold
// the word tables and the range rules. Texts compare code unit by code unit.
#include "text/AlphaMoney.h"

#include "PersianTexts.h"
#include "TestSupport.h"
#include "Vx_Main.h"

#include <cmath>
#include <limits>

using namespace vx;
using vxtest::fa;

namespace {

std::wstring say(double amount) { return AlphaMoney::create()->convert(amount); }

std::wstring ones(int n) { return fa(L"money.ones" + std::to_wstring(n)); }
std::wstring tens(int n) { return fa(L"money.tens" + std::to_wstring(n)); }
std::wstring hundreds(int n) { return fa(L"money.hundreds" + std::to_wstring(n)); }
const std::wstring A = fa(L"money.and");
const std::wstring T = fa(L"money.thousand");
const std::wstring M = fa(L"money.million");

}  // namespace

TEST(AlphaMoney, RoundingAndTruncation) {
    EXPECT_EQ(say(2.5), ones(2));  // units round half to even
    EXPECT_EQ(say(998.5), hundreds(9) + A + tens(9) + A + ones(8));
    // In the thousands the remainder is taken of the rounded amount, the thousands of the
    // truncated one.
    EXPECT_EQ(say(1000.5), ones(1) + T);
    EXPECT_EQ(say(1001.5), ones(1) + T + A + ones(2));
    EXPECT_EQ(say(1999.5), ones(1) + T);
    EXPECT_EQ(say(1999.4), ones(1) + T + A + hundreds(9) + A + tens(9) + A + ones(9));
}

TEST(AlphaMoney, GapsAndTheEdgesOfTheRanges) {
    for (double gap : {1000000001.0, 1000005000.0, 1000005001.0, 1002000001.0, 1000000999.0, 5000040000.0})
        EXPECT_EQ(say(gap), L"") << gap;
    for (double x : {-1e12, -0.5, 0.999, 999.9, 999999.5, 999999999.5, std::nan("")}) EXPECT_EQ(say(x), L"") << x;
    EXPECT_EQ(say(-0.0), fa(L"money.zero"));
    EXPECT_EQ(say(999999999999.5), fa(L"money.outofrange"));
    EXPECT_EQ(say(std::numeric_limits<double>::infinity()), fa(L"money.outofrange"));
}

TEST(AlphaMoney, FractionalMillionsAreCutFromTheText) {
    // The groups are the last three characters and the three before them, of " 1234567.5":
    // "7.5" (8 after rounding), "456", and " 123".
    EXPECT_EQ(say(1234567.5), hundreds(1) + A + tens(2) + A + ones(3) + M + A + hundreds(4) + A + tens(5) + A + ones(6) +
                                  T + A + ones(8));
    // A text whose front part is no three-digit group writes nothing.
    EXPECT_EQ(say(999999998.75), L"");  // " 999999" before "998" and ".75"
}

TEST(AlphaMoney, PropertiesStoreTheirTextUnchanged) {
    auto m = AlphaMoney::create();
    Bstr value, withNul(std::wstring_view(L"a\0b", 3));
    BSTR b = withNul.get();
    ASSERT_EQ(m->put_AlphaAnd(&b), S_OK);
    m->get_AlphaAnd(value.put());
    EXPECT_EQ(value.length(), 3u);
    EXPECT_EQ(m->convert(21), tens(2) + std::wstring(L"a\0b", 3) + ones(1));
    b = nullptr;  // a null string is the empty one
    EXPECT_EQ(m->put_AlphaThousand(&b), S_OK);
    EXPECT_EQ(m->convert(1000), ones(1));
    EXPECT_EQ(m->put_AlphaAnd(nullptr), E_POINTER);
    EXPECT_EQ(m->get_AlphaAnd(nullptr), E_POINTER);
}

TEST(AlphaMoney, InterfaceSlotsAndDispatchIdentifiers) {
    auto m = vxtest::createObject(CLSID_Ds_AlphaMoney);
    ComPtr<ITypeInfo> dispInfo, ti;
    ASSERT_EQ(m->GetTypeInfo(0, LOCALE_USER_DEFAULT, dispInfo.put()), S_OK);
    HREFTYPE href = 0;
    ASSERT_EQ(dispInfo->GetRefTypeOfImplType(static_cast<UINT>(-1), &href), S_OK);
    ASSERT_EQ(dispInfo->GetRefTypeInfo(href, ti.put()), S_OK);  // the vtable side of the dual interface
    struct Slot { const wchar_t* name; MEMBERID id; INVOKEKIND kind; };
    const Slot expected[] = {
        {L"AlphaThousand", 0x68030003, INVOKE_PROPERTYGET}, {L"AlphaThousand", 0x68030003, INVOKE_PROPERTYPUT},
        {L"AlphaMillion", 0x68030002, INVOKE_PROPERTYGET},  {L"AlphaMillion", 0x68030002, INVOKE_PROPERTYPUT},
        {L"AlphaMilliard", 0x68030001, INVOKE_PROPERTYGET}, {L"AlphaMilliard", 0x68030001, INVOKE_PROPERTYPUT},
        {L"AlphaAnd", 0x68030000, INVOKE_PROPERTYGET},      {L"AlphaAnd", 0x68030000, INVOKE_PROPERTYPUT},
        {L"ConvertAlphaMoney", 0x60030005, INVOKE_FUNC},
    };
    TYPEATTR* attr = nullptr;
    ASSERT_EQ(ti->GetTypeAttr(&attr), S_OK);
    ASSERT_EQ(attr->cFuncs, 9);
    ti->ReleaseTypeAttr(attr);
    for (UINT i = 0; i < 9; ++i) {
        FUNCDESC* fd = nullptr;
        ASSERT_EQ(ti->GetFuncDesc(i, &fd), S_OK);
        BSTR name = nullptr;
        UINT got = 0;
        ti->GetNames(fd->memid, &name, 1, &got);
        EXPECT_EQ(std::wstring(name), expected[i].name) << i;
        EXPECT_EQ(fd->memid, expected[i].id) << i;
        EXPECT_EQ(fd->invkind, expected[i].kind) << i;
        if (fd->invkind == INVOKE_PROPERTYPUT) {
            // The let takes a String by reference.
            EXPECT_EQ(fd->lprgelemdescParam[0].tdesc.vt, VT_PTR);
            EXPECT_EQ(fd->lprgelemdescParam[0].tdesc.lptdesc->vt, VT_BSTR);
            EXPECT_TRUE(fd->lprgelemdescParam[0].paramdesc.wParamFlags & PARAMFLAG_FOUT);
        }
        if (fd->invkind == INVOKE_FUNC) {
            EXPECT_EQ(fd->lprgelemdescParam[0].tdesc.vt, VT_R8);
        }
        SysFreeString(name);
        ti->ReleaseFuncDesc(fd);
    }
}
