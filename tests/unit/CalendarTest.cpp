// Ds_Calendar in-process: the day-number arithmetic across whole cycles, the reform, the
// overflow checks and the interface. The host tests (tests/host/calendar_locale.vbs) hold
// the tables of known dates. CalendarLocale runs under en-US, de-DE and fa-IR: reading a
// four-digit-year text must not depend on the locale.
#include "text/Calendar.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"

#include "PersianTexts.h"
#include "TestSupport.h"
#include "Vx_Main.h"

#include <cstdio>

using namespace vx;
using namespace vx::calendar;
using vxtest::fa;

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

TEST(CalendarLocale, FourDigitYearTextsReadTheSameInEveryLocale) {
    // Both directions, the quirks included (the full tables run in the host tests).
    const struct { const wchar_t* from; const wchar_t* to; } toMilady[] = {
        {L"1385/05/12", L"2006/8/3"}, {L"1399/12/30", L"2021/3/20"}, {L"1385/02/31", L"2006/5/21"},
        {L"0961/07/22", L"1582/10/4"}, {L"0001/01/01", L"622/3/19"}, {L"32146/01/01", L"32767/3/12"},
    }, toShamsi[] = {
        {L"2006/08/03", L"1385/05/12"}, {L"2006/03/21", L"1384/12/30"}, {L"2021/04/01", L"13100/01/12"},
        {L"2022/01/01", L"1300/10/11"}, {L"1930/06/01", L"1309/03/11"}, {L"2006-08-03 23:59", L"1385/05/12"},
    };
    for (const auto& c : toMilady) EXPECT_EQ(milady(c.from), c.to) << c.from;
    for (const auto& c : toShamsi) EXPECT_EQ(shamsi(c.from), c.to) << c.from;
    EXPECT_EQ(words(L"2006/08/03"), fa(L"calendar.thursday13850512"));
    // Formatted results are the host's short dates, which read back as the same day.
    EXPECT_EQ(miladyDate(L"1385/05/12", true), shortDateText(date(2006, 8, 3)));
    EXPECT_EQ(shamsiDate(L"2006/08/03", true), shortDateText(date(1385, 5, 12)));
    EXPECT_EQ(shamsiDate(shortDateText(date(2006, 8, 3)), false), L"1385/05/12");
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

TEST(Calendar, WordsNeedAShamsiTextThatIsAlsoAGregorianDate) {
    EXPECT_RUNTIME_ERROR(words(L"2006/08/03", L"1385/02/31"), err::TypeMismatch);
    EXPECT_RUNTIME_ERROR(calendarShamsi(L"2006/08/03", *Variant::null()), err::InvalidUseOfNull);
    // The caller's Shamsi date is used as it is: the weekday of the one, the rest of the other.
    EXPECT_EQ(words(L"2006/08/03", L"1400/1/1"), fa(L"calendar.weekday5") + L"1" + fa(L"calendar.month1") + L"1400 ");
    for (int i = 0; i < 7; ++i) EXPECT_EQ(weekdayNames[i], fa(L"calendar.weekday" + std::to_wstring(i + 1)));
    for (int i = 0; i < 12; ++i) EXPECT_EQ(monthNames[i], fa(L"calendar.month" + std::to_wstring(i + 1)));
}

// ---- The interface ----

TEST(Calendar, InterfaceAsTheTypeLibraryDescribesIt) {
    auto cal = vxtest::createObject(CLSID_Ds_Calendar);
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
