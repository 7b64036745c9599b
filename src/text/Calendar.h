#pragma once
// Ds_Calendar: Shamsi (Solar Hijri) and Miladi (Gregorian) dates as text, and a Shamsi
// date in Persian words.
//
// The two directions are deliberately different methods:
//  - Shamsi to Miladi is exact: the arithmetic 2820-year cycle gives a Julian Day Number,
//    written as a Gregorian date (a Julian-calendar date before the Gregorian reform).
//  - Miladi to Shamsi is a short table-driven shortcut with a fixed "13" century. It is
//    knowingly approximate (late March is a day off in common years, and from 2021 on the
//    year reads "13100", "1300", ...); callers depend on these results, so they stay.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace vx {

namespace calendar {

// Years, months and days are 16-bit, day numbers 32-bit, as in every procedure below;
// a result outside those ranges is an overflow (error 6).
struct YearMonthDay {
    int16_t year, month, day;
};

// The Julian Day Number of a Shamsi date (the arithmetic 2820-year cycle; divisions
// truncate toward zero).
int32_t shamsiToJulianDay(int16_t year, int16_t month, int16_t day);
// The Gregorian date of a day number; below 2299161 (1582-10-15) the Julian-calendar date.
YearMonthDay julianDayToMilady(int32_t julianDay);
YearMonthDay julianDayToJulianCalendar(int32_t julianDay);

// The members' work, on text.
std::wstring miladyDate(std::wstring_view dateShamsi, bool formatDateValue);
std::wstring shamsiDate(std::wstring_view dateMilady, bool formatDateValue);
std::wstring calendarShamsi(std::wstring_view dateMilady, const VARIANT& dateShamsi);

// The names used by calendarShamsi: weekdays from Sunday, Shamsi months from Farvardin.
extern const wchar_t* const weekdayNames[7];
extern const wchar_t* const monthNames[12];

}  // namespace calendar

class Calendar : public DispatchObject<Calendar, _Ds_Calendar> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_Calendar; }

    HRESULT STDMETHODCALLTYPE ConvertDateFormat(BSTR DateStr, Flag_TypeDate ConvertTypeDate, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE MiladyDate(BSTR DateShamsi, VARIANT_BOOL* IsFormatDateValue, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE CalendarShamsi(BSTR DateMilady, VARIANT* DateShamsi, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE ShamsiDate(BSTR DateMilady, BSTR Monasebat, VARIANT* StringCalendarShamsi,
                                         VARIANT_BOOL* IsFormatDateValue, BSTR* result) override;
};

}  // namespace vx
