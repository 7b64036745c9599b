// Conversions with the automation runtime's rules, and dates read year first whatever
// the locale (the *Locale tests run under en-US, de-DE and fa-IR).
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/SafeArray.h"
#include "Vx_Main.h"

#include "TestSupport.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <cstring>

using namespace vx;

TEST(Convert, IntegersRoundHalfToEvenAndOverflowIsErrorSix) {
    EXPECT_EQ(toInt16(*Variant::fromDouble(2.5)), 2);
    EXPECT_EQ(toInt16(*Variant::fromDouble(3.5)), 4);
    EXPECT_EQ(toInt16(*Variant::fromDouble(-2.5)), -2);
    EXPECT_EQ(toInt16(*Variant::fromDouble(2.5000001)), 3);
    EXPECT_EQ(toInt32(*Variant::fromText(L" 1.5 ")), 2);
    EXPECT_EQ(toInt16(*Variant::fromBool(true)), -1);
    EXPECT_EQ(toInt32(*Variant::empty()), 0);
    EXPECT_EQ(roundToInt16(-32768.5), -32768);  // half to even stays in range
    EXPECT_EQ(toInt16(*Variant::fromDouble(32767.49)), 32767);
    EXPECT_EQ(toInt32(*Variant::fromDouble(-2147483648.0)), INT32_MIN);
    EXPECT_RUNTIME_ERROR(toInt16(*Variant::fromDouble(32767.5)), 6);
    EXPECT_RUNTIME_ERROR(toInt16(*Variant::fromLong(40000)), 6);
    EXPECT_RUNTIME_ERROR(toInt32(*Variant::fromDouble(2147483647.5)), 6);
    EXPECT_RUNTIME_ERROR(toInt32(*Variant::fromText(L"99999999999")), 6);
}

TEST(Convert, NaNAndTheInfinitiesAreNoWholeNumber) {
    // The platform's conversion may give NaN as 2147483647: a count of 2^31 steps.
    const double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
    for (double d : {nan, inf, -inf}) {
        EXPECT_RUNTIME_ERROR(toInt32(*Variant::fromDouble(d)), 6);
        EXPECT_RUNTIME_ERROR(toInt16(*Variant::fromDouble(d)), 6);
        EXPECT_RUNTIME_ERROR(roundToInt32(d * 1000.0), 6);
        EXPECT_RUNTIME_ERROR(toDate(*Variant::fromDouble(d)), 6);
        Variant single;
        V_VT(single.get()) = VT_R4;
        V_R4(single.get()) = static_cast<float>(d);
        EXPECT_RUNTIME_ERROR(changeType(*vxtest::byRef(single), VT_UI1), 6);
        EXPECT_TRUE(std::isnan(toDouble(*Variant::fromDouble(d))) || std::isinf(toDouble(*Variant::fromDouble(d))));
    }
    EXPECT_TRUE(toBool(*Variant::fromDouble(nan)));
}

TEST(Convert, TypeMismatchNullAndObjects) {
    EXPECT_RUNTIME_ERROR(toInt16(*Variant::fromText(L"abc")), 13);
    EXPECT_RUNTIME_ERROR(toDouble(*Variant::fromText(L"")), 13);
    EXPECT_RUNTIME_ERROR(toBool(*Variant::fromText(L"maybe")), 13);
    EXPECT_RUNTIME_ERROR(toInt32(*Variant::missing()), 13);
    EXPECT_RUNTIME_ERROR(toText(*makeVariantArray({Variant::fromLong(1)})), 13);
    EXPECT_RUNTIME_ERROR(toInt16(*Variant::null()), 94);
    EXPECT_RUNTIME_ERROR(toText(*Variant::null()), 94);
    EXPECT_RUNTIME_ERROR(toInt32(*Variant::fromDispatch(nullptr)), 91);
    // An object stands for its default value; a list has none.
    auto list = vxtest::createObject(CLSID_Ds_ListCollection);
    EXPECT_RUNTIME_ERROR(toInt32(*Variant::fromDispatch(list.get())), 438);
    EXPECT_RUNTIME_ERROR(letValue(*Variant::fromDispatch(list.get())), 438);
    EXPECT_RUNTIME_ERROR(letValue(*Variant::fromDispatch(nullptr)), 91);
}

TEST(Convert, TextAndReferences) {
    EXPECT_EQ(toText(*Variant::fromBool(true)), L"True");
    EXPECT_EQ(toText(*Variant::fromLong(-17)), L"-17");
    EXPECT_EQ(toText(*Variant::empty()), L"");
    const std::wstring withNul(L"a\0b", 3);
    EXPECT_EQ(toText(*Variant::fromText(withNul)), withNul);  // embedded NULs are kept
    Variant inner = Variant::fromText(L"7.5");
    Variant outer = vxtest::byRef(inner);
    EXPECT_EQ(toInt16(*vxtest::byRef(outer)), 8);  // a reference to a reference is read
    EXPECT_TRUE(isNumeric(*Variant::fromText(L"12.5")));
    EXPECT_TRUE(isNumeric(*Variant::empty()));
    EXPECT_FALSE(isNumeric(*Variant::fromText(L"12a")));
    EXPECT_FALSE(isNumeric(*Variant::null()));
}

TEST(ConvertLocale, FourDigitFirstFieldIsAlwaysYearMonthDay) {
    for (const wchar_t* text : {L"2006/08/03", L"2006/8/3", L"2006-08-03", L"2006.8.3", L" 2006/8/3 "}) {
        DateParts p = splitDate(parseDate(text));
        EXPECT_EQ(p.year * 10000 + p.month * 100 + p.day, 20060803) << text;
        EXPECT_EQ(p.weekday, 5) << text;  // a Thursday, counted from Sunday
    }
    DateParts shamsi = splitDate(parseDate(L"1385/05/12 18:00"));
    EXPECT_EQ(shamsi.year * 10000 + shamsi.month * 100 + shamsi.day, 13850512);
    EXPECT_EQ(shamsi.hour, 18);  // before 1899-12-30 the time still counts forward
    DateParts p = splitDate(parseDate(L"2006/8/3 9:05:07"));
    EXPECT_EQ(p.hour * 10000 + p.minute * 100 + p.second, 90507);
    EXPECT_EQ(splitDate(parseDate(L"0100/01/01")).year, 100);
    EXPECT_EQ(splitDate(parseDate(L"2004/02/29")).day, 29);
    for (const wchar_t* text : {L"1385/02/31", L"1385/06/31", L"2006/13/01", L"2006/00/10", L"2005/02/29", L"2006/8",
                                L"2006/8/3x", L"2006/8-3", L"abc", L"", L"   "})
        EXPECT_RUNTIME_ERROR(parseDate(text), 13);
}

TEST(ConvertLocale, MakeDateAndTheLocalesShortDates) {
    DATE d = 0;
    ASSERT_TRUE(makeDate(1899, 12, 30, d));
    EXPECT_EQ(d, 0.0);
    ASSERT_TRUE(makeDate(2006, 8, 3, d));
    EXPECT_EQ(d, 38932.0);
    EXPECT_FALSE(makeDate(1900, 2, 29, d));
    EXPECT_FALSE(makeDate(99, 1, 1, d));
    EXPECT_FALSE(makeDate(10000, 1, 1, d));
    // The lane really runs under the locale the runner pinned through LANG.
    char lang[64] = {};
    GetEnvironmentVariableA("LANG", lang, sizeof lang);
    std::string expected(lang, std::min<size_t>(5, strlen(lang)));
    std::replace(expected.begin(), expected.end(), '_', '-');
    wchar_t name[LOCALE_NAME_MAX_LENGTH] = {};
    GetUserDefaultLocaleName(name, LOCALE_NAME_MAX_LENGTH);
    EXPECT_EQ(std::wstring(expected.begin(), expected.end()), name);
    // The short date drops the time of day, is what CStr writes, and reads back in the
    // locale's own order; before 1899 the time counts forward too.
    ASSERT_TRUE(makeDate(2006, 8, 3, d));
    EXPECT_EQ(shortDateText(d + 0.75), toText(*Variant::fromDate(d)));
    EXPECT_EQ(parseDate(shortDateText(d + 0.75)), d);
    ASSERT_TRUE(makeDate(1385, 5, 12, d));
    EXPECT_EQ(parseDate(shortDateText(d - 0.5)), d);
    if (expected == "en-US") {
        EXPECT_EQ(shortDateText(d - 0.25), L"5/12/1385");
    }
}
