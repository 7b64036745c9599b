// Ds_Calendar: both directions across the calendar, the date in words, the errors a host
// sees, and the same calls by name as a late-bound host makes them. Suites named
// CalendarLocale run under en-US, de-DE and fa-IR: reading a four-digit-year text must not
// depend on the locale.
#include "text/Calendar.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"

#include "PersianTexts.h"
#include "TestSupport.h"
#include "Vx_Main.h"

#include <cstdio>

using namespace vx;
using namespace vx::calendar;
using vxtest::call;
using vxtest::fa;
using vxtest::textOf;

namespace vx::calendar {

bool operator==(const YearMonthDay& a, const YearMonthDay& b) {
    return a.year == b.year && a.month == b.month && a.day == b.day;
}
std::ostream& operator<<(std::ostream& os, const YearMonthDay& x) {
    return os << x.year << "/" << x.month << "/" << x.day;
}

}  // namespace vx::calendar

namespace {

std::wstring milady(const wchar_t* shamsi) { return miladyDate(shamsi, false); }
std::wstring shamsi(const wchar_t* milady) { return shamsiDate(milady, false); }
std::wstring words(const wchar_t* milady) { return calendarShamsi(milady, *Variant::missing()); }
std::wstring words(const wchar_t* milady, const wchar_t* shamsi) {
    return calendarShamsi(milady, *Variant::fromText(shamsi));
}

std::wstring ymd(int y, int m, int d, bool padded) {
    wchar_t b[40];
    std::swprintf(b, 40, padded ? L"%04d/%02d/%02d" : L"%d/%d/%d", y, m, d);
    return b;
}

DATE date(int y, int m, int d) {
    DATE out = 0;
    EXPECT_TRUE(makeDate(y, m, d, out)) << y << "/" << m << "/" << d;
    return out;
}


// Whether a Shamsi year of the arithmetic 2820-year cycle has 366 days, written the other
// way round: from the position of the year in its cycle (years from 474 on).
bool isLeapYear(int y) { return ((((y - 474) % 2820) + 474 + 38) * 31) % 128 < 31; }

// The Julian Day Number of noon of automation day 0 (1899-12-30).
constexpr int32_t dayZero = 2415019;

}  // namespace

// ---- Shamsi to Miladi ----

TEST(CalendarLocale, ShamsiToMiladyAtKnownDates) {
    const struct { const wchar_t* shamsi; const wchar_t* milady; } cases[] = {
        {L"1385/05/12", L"2006/8/3"},   {L"1385/01/01", L"2006/3/21"}, {L"1384/12/29", L"2006/3/20"},
        {L"1403/01/01", L"2024/3/20"},  {L"1385/1/1", L"2006/3/21"},   {L"1354/01/01", L"1975/3/21"},
        {L"1370/01/01", L"1991/3/21"},  {L"1375/01/01", L"1996/3/20"}, {L"1380/01/01", L"2001/3/21"},
        {L"1390/01/01", L"2011/3/21"},  {L"1400/01/01", L"2021/3/21"},
        // Esfand 30 of a leap year, and of a common year (where it is the next year's first day).
        {L"1399/12/30", L"2021/3/20"},  {L"1403/12/30", L"2025/3/20"}, {L"1404/01/01", L"2025/3/20"},
        // Not Gregorian dates: read by splitting at "/".
        {L"1385/02/31", L"2006/5/21"},  {L"1385/06/31", L"2006/9/22"}, {L"1385/04/31", L"2006/7/22"},
        // Around the Gregorian reform: the day before it is a Julian-calendar date.
        {L"0961/07/22", L"1582/10/4"},  {L"0961/07/23", L"1582/10/15"},
        // The ends of the range.
        {L"0001/01/01", L"622/3/19"},   {L"0474/01/01", L"1095/3/15"}, {L"3293/01/01", L"3914/3/21"},
        {L"9999/12/29", L"10621/3/17"}, {L"0000/01/01", L"621/3/19"},  {L"32146/01/01", L"32767/3/12"},
    };
    for (const auto& c : cases) EXPECT_EQ(milady(c.shamsi), c.milady) << c.shamsi;
}

TEST(Calendar, DayNumbersOfTheArithmeticCycle) {
    EXPECT_EQ(shamsiToJulianDay(1, 1, 1), 1948321);
    EXPECT_EQ(julianDayToMilady(1948321), (YearMonthDay{622, 3, 19}));
    EXPECT_EQ(shamsiToJulianDay(1385, 5, 12), 2453951);
    // No year zero: years 0 and -1 both stand for the year before year 1.
    EXPECT_EQ(shamsiToJulianDay(0, 1, 1), shamsiToJulianDay(-1, 1, 1));
    EXPECT_EQ(shamsiToJulianDay(0, 1, 1), 1948321 - 365);
    // Below year 474 the cycle position is a truncated remainder, so years 24 and 25 do not
    // fall as in the floor-based cycle; the result is kept.
    EXPECT_EQ(shamsiToJulianDay(25, 1, 1) - shamsiToJulianDay(24, 1, 1), 366);
    EXPECT_EQ(shamsiToJulianDay(26, 1, 1) - shamsiToJulianDay(25, 1, 1), 365);
    // Months 1 to 6 have 31 days, 7 to 11 have 30.
    EXPECT_EQ(shamsiToJulianDay(1385, 7, 1) - shamsiToJulianDay(1385, 6, 1), 31);
    EXPECT_EQ(shamsiToJulianDay(1385, 8, 1) - shamsiToJulianDay(1385, 7, 1), 30);
}

TEST(Calendar, YearLengthsFollowTheCycleOverAWholeCycle) {
    int leapYears = 0;
    for (int y = 475; y < 475 + 2820; ++y) {
        const int length = shamsiToJulianDay(static_cast<int16_t>(y + 1), 1, 1) - shamsiToJulianDay(static_cast<int16_t>(y), 1, 1);
        ASSERT_EQ(length, isLeapYear(y) ? 366 : 365) << y;
        leapYears += length == 366;
    }
    EXPECT_EQ(leapYears, 683);
}

TEST(Calendar, ConsecutiveShamsiDaysAreConsecutiveGregorianDays) {
    // Every day of two centuries, through the member itself: the texts it returns are read
    // back as dates and must follow one another.
    DATE previous = 0;
    int checked = 0;
    for (int y = 1300; y <= 1500; ++y) {
        for (int m = 1; m <= 12; ++m) {
            const int length = m <= 6 ? 31 : m <= 11 ? 30 : isLeapYear(y) ? 30 : 29;
            for (int d = 1; d <= length; ++d) {
                const std::wstring text = milady(ymd(y, m, d, true).c_str());
                const DATE g = parseDate(text);
                if (checked++) {
                    ASSERT_EQ(g, previous + 1) << ymd(y, m, d, true) << " gave " << text;
                }
                previous = g;
            }
        }
    }
    EXPECT_EQ(checked, 73414);
}

TEST(Calendar, GregorianDatesAgreeWithTheRuntimesDates) {
    // From the reform to the runtime's last year, every 97th day.
    const int32_t last = dayZero + static_cast<int32_t>(date(9999, 12, 31));
    for (int32_t jd = 2299161; jd <= last; jd += 97) {
        const YearMonthDay g = julianDayToMilady(jd);
        DATE d = 0;
        ASSERT_TRUE(makeDate(g.year, g.month, g.day, d)) << jd;
        ASSERT_EQ(d, jd - dayZero) << jd;
    }
}

TEST(Calendar, JulianCalendarBeforeTheReform) {
    EXPECT_EQ(julianDayToMilady(2299160), (YearMonthDay{1582, 10, 4}));
    EXPECT_EQ(julianDayToMilady(2299161), (YearMonthDay{1582, 10, 15}));
    EXPECT_EQ(julianDayToJulianCalendar(0), (YearMonthDay{-4712, 1, 1}));
    EXPECT_EQ(julianDayToJulianCalendar(1721424), (YearMonthDay{1, 1, 1}));
    // 1500 is a leap year of the Julian calendar, not of the Gregorian one.
    EXPECT_EQ(julianDayToMilady(2268992), (YearMonthDay{1500, 2, 29}));
    EXPECT_EQ(julianDayToMilady(2268993), (YearMonthDay{1500, 3, 1}));
    // Below day 0 the divisions truncate toward zero, and the fields run out of their
    // usual ranges; the procedure is kept as it is.
    EXPECT_EQ(julianDayToJulianCalendar(-1), (YearMonthDay{-4713, 12, 31}));
    EXPECT_EQ(julianDayToJulianCalendar(-1402), (YearMonthDay{-4716, 2, 30}));
    EXPECT_EQ(julianDayToJulianCalendar(-1461), (YearMonthDay{-4716, 2, -29}));
    EXPECT_EQ(julianDayToJulianCalendar(-100000), (YearMonthDay{-4985, -8, -11}));
}

TEST(Calendar, OverflowAndConversionErrors) {
    // The Gregorian year of Shamsi 32147 does not fit 16 bits.
    EXPECT_RUNTIME_ERROR(milady(L"32147/01/01"), err::Overflow);
    EXPECT_RUNTIME_ERROR(shamsiToJulianDay(-32296, 1, 1), err::Overflow);  // year - 473 leaves 16 bits
    EXPECT_EQ(shamsiToJulianDay(-32295, 1, 1), -9847175);
    EXPECT_RUNTIME_ERROR(julianDayToJulianCalendar(-100000000), err::Overflow);
    EXPECT_RUNTIME_ERROR(julianDayToMilady(2147483647), err::Overflow);
    // The parts of a text the date parser rejects.
    EXPECT_RUNTIME_ERROR(milady(L"1385/40000/01"), err::Overflow);
    EXPECT_RUNTIME_ERROR(milady(L"99999/01/01"), err::Overflow);
    EXPECT_RUNTIME_ERROR(milady(L"1385/x/01"), err::TypeMismatch);
    EXPECT_RUNTIME_ERROR(milady(L"1385/02/"), err::TypeMismatch);
    EXPECT_RUNTIME_ERROR(milady(L"abc"), err::TypeMismatch);
    // Too few parts: the missing one is out of range.
    EXPECT_RUNTIME_ERROR(milady(L"1385/02"), err::SubscriptOutOfRange);
    EXPECT_RUNTIME_ERROR(milady(L""), err::SubscriptOutOfRange);
    // Extra parts are not read.
    EXPECT_EQ(milady(L"1385/02/31/9"), L"2006/5/21");
}

// ---- Miladi to Shamsi ----

TEST(CalendarLocale, MiladyToShamsiAtKnownDates) {
    const struct { const wchar_t* milady; const wchar_t* shamsi; } cases[] = {
        {L"2006/08/03", L"1385/05/12"}, {L"2006/03/20", L"1384/12/29"}, {L"2006/01/01", L"1384/10/11"},
        {L"2000/01/01", L"1378/10/11"}, {L"2009/01/01", L"1387/10/12"}, {L"2006/8/3", L"1385/05/12"},
        {L"2004/02/29", L"1382/12/10"}, {L"2004/03/01", L"1382/12/11"}, {L"1999/12/31", L"1378/10/10"},
        {L"2006-08-03", L"1385/05/12"}, {L"2006/08/03 23:59", L"1385/05/12"},
        // Late March is a day behind in common years.
        {L"2006/03/21", L"1384/12/30"}, {L"2006/03/22", L"1385/01/01"}, {L"2008/03/20", L"1386/12/30"},
        {L"2001/03/20", L"1379/12/30"},
        // The century is always 13: past 1399 the year runs on as 13100, then 1300, 1301 ...
        {L"2021/04/01", L"13100/01/12"}, {L"2022/01/01", L"1300/10/11"}, {L"2024/03/20", L"1302/12/30"},
        {L"1930/06/01", L"1309/03/11"}, {L"2030/06/01", L"1309/03/11"}, {L"1922/03/22", L"1301/01/01"},
    };
    for (const auto& c : cases) EXPECT_EQ(shamsi(c.milady), c.shamsi) << c.milady;
    // A date in the host's own short-date format reads too.
    EXPECT_EQ(shamsiDate(shortDateText(date(2006, 8, 3)), false), L"1385/05/12");
}

TEST(Calendar, ShortcutAgreesWithTheExactCalendarOutsideLateMarch) {
    // The exact Shamsi date of every Gregorian day, from the arithmetic cycle.
    std::map<DATE, std::wstring> exact;
    for (int y = 1372; y <= 1400; ++y)
        for (int m = 1; m <= 12; ++m)
            for (int d = 1; d <= (m <= 6 ? 31 : m <= 11 ? 30 : isLeapYear(y) ? 30 : 29); ++d)
                exact[shamsiToJulianDay(static_cast<int16_t>(y), static_cast<int16_t>(m), static_cast<int16_t>(d)) - dayZero] =
                    ymd(y, m, d, true);
    int differing = 0;
    for (DATE g = date(1994, 1, 1); g <= date(2020, 12, 31); g += 1) {
        const DateParts p = splitDate(g);
        const std::wstring got = shamsi(ymd(p.year, p.month, p.day, true).c_str());
        if (p.month == 3 && p.day >= 20) {
            differing += got != exact.at(g);
            continue;
        }
        ASSERT_EQ(got, exact.at(g)) << ymd(p.year, p.month, p.day, true);
    }
    EXPECT_GT(differing, 0);
}

TEST(Calendar, ShamsiDateErrors) {
    for (const wchar_t* text : {L"not a date", L"", L"2006/02/30", L"2006/13/01"})
        EXPECT_RUNTIME_ERROR(shamsi(text), err::TypeMismatch);
}

// ---- Dates written out ----

TEST(CalendarLocale, AShamsiDateInWords) {
    EXPECT_EQ(words(L"2006/08/03"), fa(L"calendar.thursday13850512"));
    EXPECT_EQ(words(L"2006/08/03"), fa(L"calendar.weekday5") + L"12" + fa(L"calendar.month5") + L"1385 ");
    // The caller's Shamsi date is used as it is: the weekday of the one date, the rest of the other.
    EXPECT_EQ(words(L"2006/08/03", L"1400/1/1"), fa(L"calendar.weekday5") + L"1" + fa(L"calendar.month1") + L"1400 ");
    // Every weekday, Sunday first (2024-03-17 is a Sunday), and every month.
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(words(ymd(2024, 3, 17 + i, true).c_str(), L"1403/01/01"),
                  fa(L"calendar.weekday" + std::to_wstring(i + 1)) + L"1" + fa(L"calendar.month1") + L"1403 ");
    for (int m = 1; m <= 12; ++m)
        EXPECT_EQ(words(L"2024/03/17", ymd(1403, m, 9, false).c_str()),
                  fa(L"calendar.weekday1") + L"9" + fa(L"calendar.month" + std::to_wstring(m)) + L"1403 ");
    // The names are the library's tables, letter for letter.
    for (int i = 0; i < 7; ++i) EXPECT_EQ(weekdayNames[i], fa(L"calendar.weekday" + std::to_wstring(i + 1)));
    for (int i = 0; i < 12; ++i) EXPECT_EQ(monthNames[i], fa(L"calendar.month" + std::to_wstring(i + 1)));
}

TEST(Calendar, WordsErrors) {
    // A Shamsi date that is no Gregorian date cannot be read as a date.
    EXPECT_RUNTIME_ERROR(words(L"2006/08/03", L"1385/02/31"), err::TypeMismatch);
    EXPECT_RUNTIME_ERROR(words(L"someday"), err::TypeMismatch);
    EXPECT_RUNTIME_ERROR(words(L"someday", L"1385/05/12"), err::TypeMismatch);
    EXPECT_RUNTIME_ERROR(calendarShamsi(L"2006/08/03", *Variant::null()), err::InvalidUseOfNull);
}

// ---- The short-date format ----

TEST(CalendarLocale, FormattedResultsUseTheHostsShortDateFormat) {
    EXPECT_EQ(miladyDate(L"1385/05/12", true), shortDateText(date(2006, 8, 3)));
    EXPECT_EQ(miladyDate(L"1385/02/31", true), shortDateText(date(2006, 5, 21)));
    EXPECT_EQ(shamsiDate(L"2006/08/03", true), shortDateText(date(1385, 5, 12)));
    // The result is a date text of the locale: it reads back as the same day.
    EXPECT_EQ(parseDate(miladyDate(L"1403/01/01", true)), date(2024, 3, 20));
    // Day 31 of a Shamsi month is no Gregorian date, so it cannot be formatted.
    EXPECT_RUNTIME_ERROR(shamsiDate(L"2006/05/21", true), err::TypeMismatch);  // 1385/02/31
}

TEST(Calendar, FormattedResultsInEnglishUnitedStates) {
    EXPECT_EQ(miladyDate(L"1385/05/12", true), L"8/3/2006");
    EXPECT_EQ(shamsiDate(L"2006/08/03", true), L"5/12/1385");
    // A locale-order text is read with the locale's parser.
    EXPECT_EQ(shamsi(L"8/3/2006"), L"1385/05/12");
}

// ---- As a late-bound host calls it ----

namespace {

ComPtr<IDispatch> newCalendar() { return vxtest::createObject(CLSID_Ds_Calendar); }
Variant text(const wchar_t* s) { return Variant::fromText(s); }

}  // namespace

TEST(Calendar, ByNameWithDefaultsAndReferences) {
    auto cal = newCalendar();
    EXPECT_EQ(textOf(call(cal.get(), L"MiladyDate", {text(L"1385/05/12")}).value), L"2006/8/3");
    EXPECT_EQ(textOf(call(cal.get(), L"ShamsiDate", {text(L"2006/08/03")}).value), L"1385/05/12");
    EXPECT_EQ(textOf(call(cal.get(), L"CalendarShamsi", {text(L"2006/08/03")}).value), fa(L"calendar.thursday13850512"));
    EXPECT_EQ(textOf(call(cal.get(), L"ConvertDateFormat", {text(L"2006/08/03"), Variant::fromLong(1)}).value), L"1385/05/12");
    EXPECT_EQ(textOf(call(cal.get(), L"ConvertDateFormat", {text(L"1385/05/12"), Variant::fromLong(2)}).value), L"2006/8/3");
    for (long other : {0L, 3L, -1L}) {
        auto r = call(cal.get(), L"ConvertDateFormat", {text(L"1385/05/12"), Variant::fromLong(other)});
        EXPECT_EQ(r.hr, S_OK);
        EXPECT_EQ(textOf(r.value), L"") << other;
    }

    // StringCalendarShamsi receives the date in words; Monasebat is left alone.
    Variant wordsOut, note = text(L"a holiday");
    auto r = call(cal.get(), L"ShamsiDate", {text(L"2006/08/03"), vxtest::byRef(note), vxtest::byRef(wordsOut)});
    EXPECT_EQ(textOf(r.value), L"1385/05/12");
    EXPECT_EQ(wordsOut.type(), VT_BSTR);
    EXPECT_EQ(textOf(wordsOut), fa(L"calendar.thursday13850512"));
    EXPECT_EQ(textOf(note), L"a holiday");

    // Formatted through a host variable holding True; the words come from the formatted text.
    Variant yes = Variant::fromBool(true), filled = Variant::fromLong(7);
    r = call(cal.get(), L"ShamsiDate", {text(L"2006/08/03"), Variant::missing(), vxtest::byRef(filled), vxtest::byRef(yes)});
    EXPECT_EQ(textOf(r.value), L"5/12/1385");
    EXPECT_EQ(textOf(filled), fa(L"calendar.thursday13850512"));
    EXPECT_EQ(textOf(call(cal.get(), L"MiladyDate", {text(L"1385/05/12"), vxtest::byRef(yes)}).value), L"8/3/2006");
    EXPECT_EQ(yes.type(), VT_BOOL);

    // A caller's DateShamsi variable is read, not written.
    Variant given = text(L"1385/05/12");
    EXPECT_EQ(textOf(call(cal.get(), L"CalendarShamsi", {text(L"2006/08/03"), vxtest::byRef(given)}).value),
              fa(L"calendar.thursday13850512"));
    EXPECT_EQ(textOf(given), L"1385/05/12");
}

TEST(Calendar, ByNameErrorsReachTheHost) {
    auto cal = newCalendar();
    EXPECT_EQ(call(cal.get(), L"ShamsiDate", {text(L"not a date")}).errorNumber(), 13);
    EXPECT_EQ(call(cal.get(), L"CalendarShamsi", {text(L"2006/08/03"), text(L"1385/02/31")}).errorNumber(), 13);
    EXPECT_EQ(call(cal.get(), L"CalendarShamsi", {text(L"never")}).errorNumber(), 13);
    EXPECT_EQ(call(cal.get(), L"MiladyDate", {text(L"1385/x/1")}).errorNumber(), 13);
    EXPECT_EQ(call(cal.get(), L"MiladyDate", {text(L"1385/40000/1")}).errorNumber(), 6);
    EXPECT_EQ(call(cal.get(), L"MiladyDate", {text(L"32767/01/01")}).errorNumber(), 6);
    EXPECT_EQ(call(cal.get(), L"ConvertDateFormat", {text(L"abc"), Variant::fromLong(1)}).errorNumber(), 13);
    EXPECT_EQ(call(cal.get(), L"ConvertDateFormat", {text(L"abc"), Variant::fromLong(2)}).errorNumber(), 13);
    EXPECT_EQ(call(cal.get(), L"ConvertDateFormat", {text(L"32767/1/1"), Variant::fromLong(2)}).errorNumber(), 6);
}

// ---- The interface ----

TEST(Calendar, InterfaceAsTheTypeLibraryDescribesIt) {
    auto cal = newCalendar();
    ComPtr<ITypeInfo> ti;
    ASSERT_EQ(cal->GetTypeInfo(0, LOCALE_USER_DEFAULT, ti.put()), S_OK);
    struct Expected { const wchar_t* name; DISPID id; };
    for (const Expected& e : {Expected{L"ConvertDateFormat", 0x60030000}, Expected{L"MiladyDate", 0x60030001},
                              Expected{L"CalendarShamsi", 0x60030005}, Expected{L"ShamsiDate", 0x60030006}}) {
        std::wstring n = e.name;
        LPOLESTR names[1] = {&n[0]};
        DISPID id = 0;
        EXPECT_EQ(cal->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id), S_OK) << e.name;
        EXPECT_EQ(id, e.id) << e.name;
    }
    // ShamsiDate (the fourth slot of the dual interface): the optional parameters, their
    // kinds and defaults.
    HREFTYPE href = 0;
    ComPtr<ITypeInfo> vtable;
    ASSERT_EQ(ti->GetRefTypeOfImplType(static_cast<UINT>(-1), &href), S_OK);
    ASSERT_EQ(ti->GetRefTypeInfo(href, vtable.put()), S_OK);
    FUNCDESC* fd = nullptr;
    ASSERT_EQ(vtable->GetFuncDesc(3, &fd), S_OK);
    EXPECT_EQ(fd->memid, 0x60030006);
    ASSERT_EQ(fd->cParams, 5);
    const ELEMDESC* p = fd->lprgelemdescParam;
    EXPECT_EQ(p[0].tdesc.vt, VT_BSTR);
    EXPECT_EQ(p[1].tdesc.vt, VT_BSTR);  // Monasebat
    EXPECT_TRUE(p[1].paramdesc.wParamFlags & PARAMFLAG_FOPT);
    ASSERT_TRUE(p[1].paramdesc.wParamFlags & PARAMFLAG_FHASDEFAULT);
    EXPECT_EQ(V_VT(&p[1].paramdesc.pparamdescex->varDefaultValue), VT_BSTR);
    EXPECT_EQ(p[2].tdesc.vt, VT_PTR);  // StringCalendarShamsi: a Variant by reference
    EXPECT_EQ(p[2].tdesc.lptdesc->vt, VT_VARIANT);
    EXPECT_TRUE(p[2].paramdesc.wParamFlags & PARAMFLAG_FOUT);
    EXPECT_TRUE(p[2].paramdesc.wParamFlags & PARAMFLAG_FOPT);
    EXPECT_EQ(p[3].tdesc.vt, VT_PTR);  // IsFormatDateValue: a Boolean by reference, False when omitted
    EXPECT_EQ(p[3].tdesc.lptdesc->vt, VT_BOOL);
    ASSERT_TRUE(p[3].paramdesc.wParamFlags & PARAMFLAG_FHASDEFAULT);
    EXPECT_EQ(V_VT(&p[3].paramdesc.pparamdescex->varDefaultValue), VT_BOOL);
    EXPECT_EQ(V_BOOL(&p[3].paramdesc.pparamdescex->varDefaultValue), VARIANT_FALSE);
    vtable->ReleaseFuncDesc(fd);
}
