// Ds_Calendar's arithmetic in-process: the day numbers of the 2820-year cycle, every day of
// two centuries in both directions, the reform, and the overflow checks of the day-number
// procedures. The tables of known dates and the errors a host sees are in
// tests/host/calendar_locale.vbs.
#include "text/Calendar.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"

#include "TestSupport.h"

#include <cstdio>

using namespace vx;
using namespace vx::calendar;

namespace vx::calendar {
bool operator==(const YearMonthDay& a, const YearMonthDay& b) {
    return a.year == b.year && a.month == b.month && a.day == b.day;
}
std::ostream& operator<<(std::ostream& os, const YearMonthDay& x) {
    return os << x.year << "/" << x.month << "/" << x.day;
}
}  // namespace vx::calendar

namespace {

// Whether a Shamsi year has 366 days, from its position in the cycle (years from 474 on).
bool isLeapYear(int y) { return ((((y - 474) % 2820) + 474 + 38) * 31) % 128 < 31; }

int32_t jd(int y, int m, int d) {
    return shamsiToJulianDay(static_cast<int16_t>(y), static_cast<int16_t>(m), static_cast<int16_t>(d));
}

constexpr int32_t dayZero = 2415019;  // the Julian Day Number of automation day 0 (1899-12-30)

}  // namespace

TEST(Calendar, DayNumbersOfTheArithmeticCycle) {
    EXPECT_EQ(jd(1, 1, 1), 1948321);
    EXPECT_EQ(jd(1385, 5, 12), 2453951);
    // No year zero: years 0 and -1 both stand for the year before year 1.
    EXPECT_EQ(jd(0, 1, 1), 1948321 - 365);
    EXPECT_EQ(jd(-1, 1, 1), jd(0, 1, 1));
    // Below year 474 the cycle position is a truncated remainder, so years 24 and 25 do
    // not fall as in the floor-based cycle; the result is kept.
    EXPECT_EQ(jd(25, 1, 1) - jd(24, 1, 1), 366);
    EXPECT_EQ(jd(26, 1, 1) - jd(25, 1, 1), 365);
    // A whole cycle holds 683 leap years, where the cycle puts them.
    int leapYears = 0;
    for (int y = 475; y < 475 + 2820; ++y) {
        const int length = jd(y + 1, 1, 1) - jd(y, 1, 1);
        ASSERT_EQ(length, isLeapYear(y) ? 366 : 365) << y;
        leapYears += length == 366;
    }
    EXPECT_EQ(leapYears, 683);
}

TEST(Calendar, EveryDayOfTwoCenturiesInBothDirections) {
    // Every Shamsi day from 1300 to 1500 through MiladyDate: the Gregorian texts must be
    // consecutive days. From 1994 to 2020 the ShamsiDate shortcut must read each of them
    // back to the same Shamsi text, except in late March, where it is knowingly a day off.
    DATE previous = 0;
    int days = 0, readBack = 0;
    for (int y = 1300; y <= 1500; ++y)
        for (int m = 1; m <= 12; ++m)
            for (int d = 1, length = m <= 6 ? 31 : m <= 11 ? 30 : isLeapYear(y) ? 30 : 29; d <= length; ++d) {
                wchar_t text[16];
                std::swprintf(text, 16, L"%04d/%02d/%02d", y, m, d);
                const std::wstring milady = miladyDate(text, false);
                const DATE g = parseDate(milady);
                if (days++) {
                    ASSERT_EQ(g, previous + 1) << text << " gave " << milady;
                }
                previous = g;
                const DateParts p = splitDate(g);
                if (p.year >= 1994 && p.year <= 2020 && !(p.month == 3 && p.day >= 20)) {
                    ASSERT_EQ(shamsiDate(milady, false), text) << milady;
                    ++readBack;
                }
            }
    EXPECT_EQ(days, 73414);
    EXPECT_GT(readBack, 9500);
}

TEST(Calendar, GregorianDatesAgreeWithTheRuntimesDates) {
    // From the reform to the runtime's last year, every 97th day.
    DATE last = 0;
    ASSERT_TRUE(makeDate(9999, 12, 31, last));
    for (int32_t day = 2299161; day <= dayZero + static_cast<int32_t>(last); day += 97) {
        const YearMonthDay g = julianDayToMilady(day);
        DATE d = 0;
        ASSERT_TRUE(makeDate(g.year, g.month, g.day, d)) << day;
        ASSERT_EQ(d, day - dayZero) << day;
    }
}

TEST(Calendar, JulianCalendarBeforeTheReform) {
    EXPECT_EQ(julianDayToMilady(1948321), (YearMonthDay{622, 3, 19}));
    EXPECT_EQ(julianDayToMilady(2299160), (YearMonthDay{1582, 10, 4}));
    EXPECT_EQ(julianDayToMilady(2299161), (YearMonthDay{1582, 10, 15}));
    EXPECT_EQ(julianDayToMilady(2268992), (YearMonthDay{1500, 2, 29}));  // Julian leap year, not Gregorian
    EXPECT_EQ(julianDayToJulianCalendar(0), (YearMonthDay{-4712, 1, 1}));
    // Below day 0 the divisions truncate toward zero, and the fields run out of their
    // usual ranges; the procedure is kept as it is.
    EXPECT_EQ(julianDayToJulianCalendar(-1), (YearMonthDay{-4713, 12, 31}));
    EXPECT_EQ(julianDayToJulianCalendar(-1461), (YearMonthDay{-4716, 2, -29}));
    EXPECT_EQ(julianDayToJulianCalendar(-100000), (YearMonthDay{-4985, -8, -11}));
}

TEST(Calendar, OverflowInTheDayNumberProcedures) {
    EXPECT_RUNTIME_ERROR(jd(-32296, 1, 1), err::Overflow);  // year - 473 leaves 16 bits
    EXPECT_EQ(jd(-32295, 1, 1), -9847175);
    EXPECT_RUNTIME_ERROR(julianDayToJulianCalendar(-100000000), err::Overflow);
    EXPECT_RUNTIME_ERROR(julianDayToMilady(2147483647), err::Overflow);
    EXPECT_RUNTIME_ERROR(miladyDate(L"32147/01/01", false), err::Overflow);  // the Gregorian year leaves 16 bits
    EXPECT_EQ(miladyDate(L"32146/01/01", false), L"32767/3/12");
    EXPECT_RUNTIME_ERROR(miladyDate(L"99999/01/01", false), err::Overflow);
}
