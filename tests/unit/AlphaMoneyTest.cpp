// Ds_AlphaMoney: the word tables, every range rule of the amount (gaps included), the
// properties, and the interface as a host sees it. Texts compare code unit by code unit.
#include "text/AlphaMoney.h"

#include "PersianTexts.h"
#include "TestSupport.h"
#include "Vx_Main.h"

#include <cmath>
#include <limits>

using namespace vx;
using vxtest::call;
using vxtest::fa;
using vxtest::textOf;

namespace {

std::wstring say(double amount) { return AlphaMoney::create()->convert(amount); }

std::wstring ones(int n) { return fa(L"money.ones" + std::to_wstring(n)); }
std::wstring tens(int n) { return fa(L"money.tens" + std::to_wstring(n)); }
std::wstring hundreds(int n) { return fa(L"money.hundreds" + std::to_wstring(n)); }
const std::wstring A = fa(L"money.and");
const std::wstring T = fa(L"money.thousand");
const std::wstring M = fa(L"money.million");
const std::wstring B = fa(L"money.milliard");

}  // namespace

TEST(AlphaMoney, WordTables) {
    EXPECT_EQ(say(0), fa(L"money.zero"));
    for (int n = 1; n <= 19; ++n) EXPECT_EQ(say(n), ones(n)) << n;
    for (int t = 2; t <= 9; ++t) EXPECT_EQ(say(t * 10), tens(t)) << t * 10;
    for (int h = 1; h <= 9; ++h) EXPECT_EQ(say(h * 100), hundreds(h)) << h * 100;
}

TEST(AlphaMoney, ThreeDigitGroups) {
    EXPECT_EQ(say(21), fa(L"money.say21"));  // two blanks: the tens word's own and the joining word's
    EXPECT_EQ(say(21), tens(2) + A + ones(1));
    EXPECT_EQ(say(50), tens(5));
    EXPECT_EQ(say(50)[0], L' ');  // the leading blank of fifty stays
    EXPECT_EQ(say(105), fa(L"money.say105"));
    EXPECT_EQ(say(110), hundreds(1) + A + ones(10));
    EXPECT_EQ(say(119), hundreds(1) + A + ones(19));
    EXPECT_EQ(say(120), hundreds(1) + A + tens(2));
    EXPECT_EQ(say(999), hundreds(9) + A + tens(9) + A + ones(9));
    EXPECT_EQ(say(57), tens(5) + A + ones(7));
}

TEST(AlphaMoney, ThousandsRoundTheRemainderAndTruncateTheThousands) {
    EXPECT_EQ(say(1000), ones(1) + T);
    EXPECT_EQ(say(2500), fa(L"money.say2500"));
    EXPECT_EQ(say(999999), hundreds(9) + A + tens(9) + A + ones(9) + T + A + hundreds(9) + A + tens(9) + A + ones(9));
    EXPECT_EQ(say(20020), tens(2) + T + A + tens(2));
    EXPECT_EQ(say(1000.5), ones(1) + T);             // 1000.5 rounds half to even: no remainder
    EXPECT_EQ(say(1001.5), ones(1) + T + A + ones(2));  // 1001.5 rounds to 1002
    EXPECT_EQ(say(1999.5), ones(1) + T);             // 2000 has no remainder, the thousands stay 1
    EXPECT_EQ(say(1999.4), ones(1) + T + A + hundreds(9) + A + tens(9) + A + ones(9));
}

TEST(AlphaMoney, Millions) {
    EXPECT_EQ(say(1000000), fa(L"money.say1000000"));
    EXPECT_EQ(say(2500000), fa(L"money.say2500000"));
    EXPECT_EQ(say(1000001), ones(1) + M + A + ones(1));
    EXPECT_EQ(say(1001000), ones(1) + M + A + ones(1) + T);
    EXPECT_EQ(say(1001001), ones(1) + M + A + ones(1) + T + A + ones(1));
    EXPECT_EQ(say(999999999), hundreds(9) + A + tens(9) + A + ones(9) + M + A + hundreds(9) + A + tens(9) + A +
                                  ones(9) + T + A + hundreds(9) + A + tens(9) + A + ones(9));
}

TEST(AlphaMoney, MilliardsWriteOnlyFourShapes) {
    EXPECT_EQ(say(1000000000), fa(L"money.say1000000000"));
    EXPECT_EQ(say(2003000000), ones(2) + B + A + ones(3) + M);
    EXPECT_EQ(say(2003004000), ones(2) + B + A + ones(3) + M + A + ones(4) + T);
    EXPECT_EQ(say(2003004005), ones(2) + B + A + ones(3) + M + A + ones(4) + T + A + ones(5));
    EXPECT_EQ(say(999999999999.0), hundreds(9) + A + tens(9) + A + ones(9) + B + A + hundreds(9) + A + tens(9) + A +
                                       ones(9) + M + A + hundreds(9) + A + tens(9) + A + ones(9) + T + A + hundreds(9) +
                                       A + tens(9) + A + ones(9));
    // Every other shape is "": these gaps are kept.
    for (double gap : {1000000001.0, 1000005000.0, 1000005001.0, 1002000001.0, 1000000999.0, 5000040000.0})
        EXPECT_EQ(say(gap), L"") << gap;
}

TEST(AlphaMoney, OutOfRangeAndBetweenRanges) {
    const std::wstring outOfRange = fa(L"money.outofrange");
    EXPECT_EQ(say(1000000000000.0), outOfRange);
    EXPECT_EQ(say(999999999999.5), outOfRange);
    EXPECT_EQ(say(1e300), outOfRange);
    EXPECT_EQ(say(std::numeric_limits<double>::infinity()), outOfRange);
    for (double x : {-5.0, -0.5, -1e12, 0.5, 0.999, 999.5, 999.9, 999999.5, 999999999.5})
        EXPECT_EQ(say(x), L"") << x;
    EXPECT_EQ(say(std::nan("")), L"");
    EXPECT_EQ(say(-0.0), fa(L"money.zero"));
}

TEST(AlphaMoney, UnitsRoundHalfToEven) {
    EXPECT_EQ(say(1.5), ones(2));
    EXPECT_EQ(say(2.5), ones(2));
    EXPECT_EQ(say(1.2), ones(1));
    EXPECT_EQ(say(998.5), hundreds(9) + A + tens(9) + A + ones(8));
}

TEST(AlphaMoney, FractionalMillionsAreCutFromTheText) {
    // The groups are the last three characters and the three before them, of " 1234567.5":
    // "7.5" (8 after rounding), "456", and " 123".
    EXPECT_EQ(say(1234567.5), hundreds(1) + A + tens(2) + A + ones(3) + M + A + hundreds(4) + A + tens(5) + A + ones(6) +
                                  T + A + ones(8));
    // A text whose front part is no three-digit group writes nothing.
    EXPECT_EQ(say(999999998.75), L"");  // " 999999" before "998" and ".75"
}

TEST(AlphaMoney, PropertiesReplaceTheScaleAndJoiningWords) {
    auto m = AlphaMoney::create();
    Bstr value;
    m->get_AlphaAnd(value.put());
    EXPECT_EQ(value.str(), A);
    m->get_AlphaThousand(value.put());
    EXPECT_EQ(value.str(), T);  // no trailing blank, unlike the other scale words
    m->get_AlphaMillion(value.put());
    EXPECT_EQ(value.str(), M);
    m->get_AlphaMilliard(value.put());
    EXPECT_EQ(value.str(), B);

    Bstr andWord(L" and "), thousand(L" thousand"), million(L" million "), milliard(L" milliard ");
    BSTR b = andWord.get();
    ASSERT_EQ(m->put_AlphaAnd(&b), S_OK);
    b = thousand.get();
    m->put_AlphaThousand(&b);
    b = million.get();
    m->put_AlphaMillion(&b);
    b = milliard.get();
    m->put_AlphaMilliard(&b);
    EXPECT_EQ(m->convert(2003004005), ones(2) + L" milliard  and " + ones(3) + L" million  and " + ones(4) +
                                          L" thousand and " + ones(5));
    EXPECT_EQ(m->convert(21), tens(2) + L" and " + ones(1));

    // Stored unchanged: an empty joining word joins with nothing; a NUL is kept.
    Bstr empty(L""), withNul(std::wstring_view(L"a\0b", 3));
    b = empty.get();
    m->put_AlphaAnd(&b);
    EXPECT_EQ(m->convert(21), tens(2) + ones(1));
    b = nullptr;
    EXPECT_EQ(m->put_AlphaAnd(&b), S_OK);
    m->get_AlphaAnd(value.put());
    EXPECT_EQ(value.length(), 0u);
    b = withNul.get();
    m->put_AlphaAnd(&b);
    m->get_AlphaAnd(value.put());
    EXPECT_EQ(value.length(), 3u);
    EXPECT_EQ(m->put_AlphaAnd(nullptr), E_POINTER);
    // Each object keeps its own words.
    EXPECT_EQ(say(21), fa(L"money.say21"));
}

TEST(AlphaMoney, ByNameAsAHostCallsIt) {
    auto m = vxtest::createObject(CLSID_Ds_AlphaMoney);
    EXPECT_EQ(textOf(call(m.get(), L"ConvertAlphaMoney", {Variant::fromLong(2500)}).value), fa(L"money.say2500"));
    EXPECT_EQ(textOf(call(m.get(), L"ConvertAlphaMoney", {Variant::fromText(L"21")}).value), fa(L"money.say21"));
    EXPECT_EQ(call(m.get(), L"ConvertAlphaMoney", {Variant::fromText(L"lots")}).errorNumber(), 13);
    EXPECT_EQ(call(m.get(), L"ConvertAlphaMoney", {Variant::null()}).errorNumber(), 13);  // the dispatch conversion's
    EXPECT_EQ(textOf(vxtest::get(m.get(), L"AlphaThousand").value), T);

    // A literal and a host variable both assign the by-reference String.
    EXPECT_EQ(vxtest::put(m.get(), L"AlphaAnd", Variant::fromText(L" & ")).hr, S_OK);
    EXPECT_EQ(textOf(vxtest::get(m.get(), L"AlphaAnd").value), L" & ");
    Variant variable = Variant::fromText(L" plus ");
    EXPECT_EQ(vxtest::put(m.get(), L"AlphaAnd", vxtest::byRef(variable)).hr, S_OK);
    EXPECT_EQ(textOf(vxtest::get(m.get(), L"AlphaAnd").value), L" plus ");
    EXPECT_EQ(textOf(variable), L" plus ");
    Variant number = Variant::fromLong(5);
    EXPECT_EQ(vxtest::put(m.get(), L"AlphaMillion", vxtest::byRef(number)).hr, S_OK);
    EXPECT_EQ(textOf(vxtest::get(m.get(), L"AlphaMillion").value), L"5");
    EXPECT_EQ(number.type(), VT_I4);  // the host's variable keeps its value and type
    EXPECT_EQ(textOf(call(m.get(), L"ConvertAlphaMoney", {Variant::fromDouble(1000001)}).value),
              ones(1) + L"5 plus " + ones(1));
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
