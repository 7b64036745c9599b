// Conversions with the automation runtime's rules.
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/SafeArray.h"
#include "Vx_Main.h"

#include "TestSupport.h"

#include <algorithm>
#include <cstring>

using namespace vx;


TEST(Convert, IntegersRoundHalfToEven) {
    EXPECT_EQ(toInt16(*Variant::fromDouble(2.5)), 2);
    EXPECT_EQ(toInt16(*Variant::fromDouble(3.5)), 4);
    EXPECT_EQ(toInt16(*Variant::fromDouble(-2.5)), -2);
    EXPECT_EQ(toInt16(*Variant::fromDouble(2.5000001)), 3);
    EXPECT_EQ(toInt32(*Variant::fromDouble(0.5)), 0);
    EXPECT_EQ(toInt32(*Variant::fromDouble(1.5)), 2);
    EXPECT_EQ(toInt32(*Variant::fromText(L"1.5")), 2);
    EXPECT_EQ(toInt32(*Variant::fromText(L" 42 ")), 42);
    EXPECT_EQ(toInt16(*Variant::fromBool(true)), -1);
    EXPECT_EQ(toInt32(*Variant::empty()), 0);
    EXPECT_EQ(roundToInt16(-32768.5), -32768);  // half to even stays in range
}

TEST(Convert, OverflowIsErrorSix) {
    EXPECT_EQ(toInt16(*Variant::fromDouble(32767.49)), 32767);
    EXPECT_RUNTIME_ERROR(toInt16(*Variant::fromDouble(32767.5)), 6);
    EXPECT_RUNTIME_ERROR(toInt16(*Variant::fromLong(40000)), 6);
    EXPECT_RUNTIME_ERROR(toInt32(*Variant::fromDouble(2147483647.5)), 6);
    EXPECT_RUNTIME_ERROR(toInt32(*Variant::fromText(L"99999999999")), 6);
    EXPECT_EQ(toInt32(*Variant::fromDouble(-2147483648.0)), INT32_MIN);
}

TEST(Convert, WhatCannotBeConvertedIsTypeMismatch) {
    EXPECT_RUNTIME_ERROR(toInt16(*Variant::fromText(L"abc")), 13);
    EXPECT_RUNTIME_ERROR(toDouble(*Variant::fromText(L"")), 13);
    EXPECT_RUNTIME_ERROR(toBool(*Variant::fromText(L"maybe")), 13);
    EXPECT_RUNTIME_ERROR(toInt32(*Variant::missing()), 13);
    EXPECT_RUNTIME_ERROR(toText(*makeVariantArray({Variant::fromLong(1), Variant::fromLong(2)})), 13);
}

TEST(Convert, NullAndNothing) {
    EXPECT_RUNTIME_ERROR(toInt16(*Variant::null()), 94);
    EXPECT_RUNTIME_ERROR(toText(*Variant::null()), 94);
    EXPECT_RUNTIME_ERROR(toBool(*Variant::null()), 94);
    EXPECT_RUNTIME_ERROR(toInt32(*Variant::fromDispatch(nullptr)), 91);
}

TEST(Convert, ObjectsStandForTheirDefaultValue) {
    // A list has no default member: the runtime's "object doesn't support" error.
    auto list = vxtest::createObject(CLSID_Ds_ListCollection);
    EXPECT_RUNTIME_ERROR(toInt32(*Variant::fromDispatch(list.get())), 438);
    EXPECT_RUNTIME_ERROR(letValue(*Variant::fromDispatch(list.get())), 438);
    EXPECT_RUNTIME_ERROR(letValue(*Variant::fromDispatch(nullptr)), 91);
}

TEST(Convert, Text) {
    EXPECT_EQ(toText(*Variant::fromBool(true)), L"True");
    EXPECT_EQ(toText(*Variant::fromBool(false)), L"False");
    EXPECT_EQ(toText(*Variant::fromLong(-17)), L"-17");
    EXPECT_EQ(toText(*Variant::empty()), L"");
    EXPECT_EQ(toText(*Variant::fromText(L"x\0y")), std::wstring(L"x", 1));
    std::wstring withNul(L"a\0b", 3);
    EXPECT_EQ(toText(*Variant::fromText(withNul)), withNul);
}

TEST(Convert, ByReferenceArgumentsAreRead) {
    Variant v = Variant::fromDouble(7.5);
    EXPECT_EQ(toInt16(*vxtest::byRef(v)), 8);
    Variant inner = Variant::fromText(L"9");
    Variant outer = vxtest::byRef(inner);
    EXPECT_EQ(toInt32(*vxtest::byRef(outer)), 9);  // a reference to a reference
}

TEST(ConvertLocale, FourDigitFirstFieldIsAlwaysYearMonthDay) {
    for (const wchar_t* text : {L"2006/08/03", L"2006/8/3", L"2006-08-03", L"2006.8.3", L" 2006/8/3 "}) {
        DateParts p = splitDate(parseDate(text));
        EXPECT_EQ(p.year, 2006) << text;
        EXPECT_EQ(p.month, 8) << text;
        EXPECT_EQ(p.day, 3) << text;
    }
    DateParts shamsi = splitDate(parseDate(L"1385/05/12"));
    EXPECT_EQ(shamsi.year, 1385);
    EXPECT_EQ(shamsi.month, 5);
    EXPECT_EQ(shamsi.day, 12);
    DateParts early = splitDate(parseDate(L"0100/01/01"));
    EXPECT_EQ(early.year, 100);
}

TEST(ConvertLocale, YearFirstDatesMayCarryATime) {
    DATE d = parseDate(L"2006/8/3 9:05:07");
    DateParts p = splitDate(d);
    EXPECT_EQ(p.day, 3);
    EXPECT_EQ(p.hour, 9);
    EXPECT_EQ(p.minute, 5);
    EXPECT_EQ(p.second, 7);
    // Before 1899-12-30 the time still counts forward from the day's start.
    DateParts q = splitDate(parseDate(L"1385/05/12 18:00"));
    EXPECT_EQ(q.day, 12);
    EXPECT_EQ(q.hour, 18);
}

TEST(ConvertLocale, InvalidYearFirstDatesAreTypeMismatch) {
    for (const wchar_t* text : {L"1385/02/31", L"1385/06/31", L"2006/13/01", L"2006/00/10", L"2005/02/29",
                                L"2006/8", L"2006/8/3x", L"2006/8-3", L"abc", L"", L"   "}) {
        EXPECT_RUNTIME_ERROR(parseDate(text), 13);
    }
    EXPECT_EQ(splitDate(parseDate(L"2004/02/29")).day, 29);  // a leap day is a date
}

TEST(ConvertLocale, WeekdayCountsFromSunday) {
    EXPECT_EQ(splitDate(parseDate(L"2006/08/03")).weekday, 5);  // a Thursday
    EXPECT_EQ(splitDate(parseDate(L"2024/03/17")).weekday, 1);  // a Sunday
}

TEST(ConvertLocale, DateValuesRoundTripThroughMakeDate) {
    DATE d = 0;
    ASSERT_TRUE(makeDate(1899, 12, 30, d));
    EXPECT_EQ(d, 0.0);
    ASSERT_TRUE(makeDate(2006, 8, 3, d));
    EXPECT_EQ(d, 38932.0);
    ASSERT_TRUE(makeDate(1385, 5, 12, d));
    EXPECT_EQ(splitDate(d).year, 1385);
    EXPECT_FALSE(makeDate(1900, 2, 29, d));
    EXPECT_FALSE(makeDate(99, 1, 1, d));
    EXPECT_FALSE(makeDate(10000, 1, 1, d));
}

TEST(Convert, IsNumeric) {
    EXPECT_TRUE(isNumeric(*Variant::fromText(L"12.5")));
    EXPECT_TRUE(isNumeric(*Variant::fromLong(3)));
    EXPECT_TRUE(isNumeric(*Variant::empty()));
    EXPECT_FALSE(isNumeric(*Variant::fromText(L"")));
    EXPECT_FALSE(isNumeric(*Variant::fromText(L"12a")));
    EXPECT_FALSE(isNumeric(*Variant::null()));
}

TEST(ConvertLocale, TheLaneRunsUnderItsLocale) {
    // The test runner pins the locale through LANG (de_DE.UTF-8 and so on).
    char lang[64] = {};
    GetEnvironmentVariableA("LANG", lang, sizeof lang);
    std::string expected(lang, std::min<size_t>(5, strlen(lang)));
    std::replace(expected.begin(), expected.end(), '_', '-');
    wchar_t name[LOCALE_NAME_MAX_LENGTH] = {};
    GetUserDefaultLocaleName(name, LOCALE_NAME_MAX_LENGTH);
    EXPECT_EQ(std::wstring(expected.begin(), expected.end()), name);
    // And the locale's own order reads its own short dates.
    DateParts p = splitDate(parseDate(L"2006/8/3"));
    std::wstring local = toText(*Variant::fromDate(parseDate(L"2006/8/3")));
    DateParts q = splitDate(parseDate(local));
    EXPECT_EQ(q.year, p.year);
    EXPECT_EQ(q.month, p.month);
    EXPECT_EQ(q.day, p.day);
}

TEST(ConvertLocale, ShortDateTextWritesTheDateInTheLocalesShortFormat) {
    DATE d = 0;
    ASSERT_TRUE(makeDate(2006, 8, 3, d));
    const std::wstring text = shortDateText(d + 0.75);
    EXPECT_EQ(parseDate(text), d);  // the time of day is dropped, and the text reads back
    EXPECT_EQ(text, toText(*Variant::fromDate(d)));  // as CStr writes a date without a time
    ASSERT_TRUE(makeDate(1385, 5, 12, d));
    EXPECT_EQ(parseDate(shortDateText(d - 0.5)), d);  // before 1899 the time counts forward too
}

TEST(Convert, ShortDateTextInEnglishUnitedStates) {
    DATE d = 0;
    ASSERT_TRUE(makeDate(2006, 8, 3, d));
    EXPECT_EQ(shortDateText(d), L"8/3/2006");
    ASSERT_TRUE(makeDate(1385, 5, 12, d));
    EXPECT_EQ(shortDateText(d - 0.25), L"5/12/1385");  // 06:00 of a day before 1899-12-30
}
