#include "text/Calendar.h"

#include "Vx_MainEnums.h"
#include "core/dispatch/Defaults.h"
#include "core/runtime/Checked.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/Text.h"

#include <cmath>

namespace vx {

namespace calendar {

// The Persian names, as explicit code points so that no editor or compiler can change a
// letter: YEH is U+064A (never U+06CC), and the weekday names write KEHEH (U+06A9). Every
// name carries one blank before and one after.
const wchar_t* const weekdayNames[7] = {
    L" \u064A\u06A9 \u0634\u0646\u0628\u0647 ",             // Sunday
    L" \u062F\u0648 \u0634\u0646\u0628\u0647 ",             // Monday
    L" \u0633\u0647 \u0634\u0646\u0628\u0647 ",             // Tuesday
    L" \u0686\u0647\u0627\u0631 \u0634\u0646\u0628\u0647 ",  // Wednesday
    L" \u067E\u0646\u062C \u0634\u0646\u0628\u0647 ",       // Thursday
    L" \u062C\u0645\u0639\u0647 ",                         // Friday
    L" \u0634\u0646\u0628\u0647 ",                         // Saturday
};

const wchar_t* const monthNames[12] = {
    L" \u0641\u0631\u0648\u0631\u062F\u064A\u0646 ",       // Farvardin
    L" \u0627\u0631\u062F\u064A\u0628\u0647\u0634\u062A ",  // Ordibehesht
    L" \u062E\u0631\u062F\u0627\u062F ",                   // Khordad
    L" \u062A\u064A\u0631 ",                               // Tir
    L" \u0645\u0631\u062F\u0627\u062F ",                   // Mordad
    L" \u0634\u0647\u0631\u064A\u0648\u0631 ",             // Shahrivar
    L" \u0645\u0647\u0631 ",                               // Mehr
    L" \u0622\u0628\u0627\u0646 ",                         // Aban
    L" \u0622\u0630\u0631 ",                               // Azar
    L" \u062F\u064A ",                                     // Dey
    L" \u0628\u0647\u0645\u0646 ",                         // Bahman
    L" \u0627\u0633\u0641\u0646\u062F ",                   // Esfand
};

namespace {

// Long and Integer arithmetic as the procedures do it: overflow is error 6, division
// truncates toward zero.
using Long = Checked<int32_t>;

// Stores into a 16-bit variable: overflow is error 6.
int16_t toShort(Long v) { return Checked<int16_t>(v.value()).value(); }

// Division carried out in double precision and truncated toward zero.
Long fixDiv(Long a, double b) { return Long(static_cast<long long>(std::trunc(a.value() / b))); }

// Days to add to the Gregorian day of month, by Gregorian month (January first).
const int16_t monthOffset[12] = {10, 11, 9, 11, 10, 10, 9, 9, 9, 8, 9, 9};

std::wstring number(int n) { return std::to_wstring(n); }

// DateValue: the date part of a text read as a date.
DATE dateValue(std::wstring_view text) { return std::trunc(parseDate(text)); }

}  // namespace

int32_t shamsiToJulianDay(int16_t year, int16_t month, int16_t day) {
    const int16_t epbase = toShort(year >= 0 ? Long(year) - 474 : Long(year) - 473);
    const Long epyear = Long(474) + Long(epbase % 2820);  // the remainder keeps the dividend's sign
    const Long monthDays = month <= 7 ? (Long(month) - 1) * 31 : (Long(month) - 1) * 30 + 6;
    const Long s = fixDiv(epyear * 682 - 110, 2816.0) + (Long(day) + monthDays) + (epyear - 1) * 365;
    return (fixDiv(Long(epbase), 2820.0) * 1029983 + s + 1948320).value();
}

YearMonthDay julianDayToMilady(int32_t julianDay) {
    if (julianDay < 2299161) return julianDayToJulianCalendar(julianDay);
    Long l = Long(julianDay) + 68569;
    const Long n = (Long(4) * l) / 146097;
    l = l - (Long(146097) * n + 3) / 4;
    const Long i = (Long(4000) * (l + 1)) / 1461001;
    l = l - (Long(1461) * i) / 4 + 31;
    const Long j = (Long(80) * l) / 2447;
    const Long day = l - (Long(2447) * j) / 80;
    l = j / 11;
    const Long month = j + 2 - Long(12) * l;
    const Long year = Long(100) * (n - 49) + i + l;
    return {toShort(year), toShort(month), toShort(day)};
}

YearMonthDay julianDayToJulianCalendar(int32_t julianDay) {
    const Long j = Long(julianDay) + 1402;
    const Long k = (j - 1) / 1461;
    const Long l = j - Long(1461) * k;
    const Long n = (l - 1) / 365 - l / 1461;
    const Long i = l - Long(365) * n + 30;
    const Long J = (Long(80) * i) / 2447;
    const Long day = i - (Long(2447) * J) / 80;
    const Long I = J / 11;
    const Long month = J + 2 - Long(12) * I;
    const Long year = Long(4) * k + n + I - 4716;
    return {toShort(year), toShort(month), toShort(day)};
}

std::wstring miladyDate(std::wstring_view dateShamsi, bool formatDateValue) {
    // A Shamsi date that is also a valid Gregorian date of the same numbers is read by the
    // date parser; one that is not (1385/02/31) is split at "/".
    int16_t year = 0, month = 0, day = 0;
    const bool read = tryStatement([&] {
        const DateParts p = splitDate(parseDate(dateShamsi));
        year = static_cast<int16_t>(p.year);
        month = static_cast<int16_t>(p.month);
        day = static_cast<int16_t>(p.day);
    });
    if (!read) {
        const std::vector<std::wstring> parts = split(dateShamsi, L"/");
        auto part = [&](size_t index) {
            if (index >= parts.size()) raise(err::SubscriptOutOfRange);
            return toInt16(*Variant::fromText(parts[index]));
        };
        year = part(0);
        month = part(1);
        day = part(2);
    }
    const YearMonthDay m = julianDayToMilady(shamsiToJulianDay(year, month, day));
    std::wstring text = number(m.year) + L"/" + number(m.month) + L"/" + number(m.day);
    if (formatDateValue) text = shortDateText(dateValue(text));
    return text;
}

std::wstring shamsiDate(std::wstring_view dateMilady, bool formatDateValue) {
    const DateParts p = splitDate(parseDate(dateMilady));
    const int d = p.day, y = p.year, m = p.month;

    int k = monthOffset[m - 1];
    const int yy = y % 100;
    if (yy % 4 == 0 && m > 2) k = k + 1;
    if ((yy - 1) % 4 == 0 && m <= 3) k = k + 1;  // -1 % 4 is -1: year 00 takes no correction here

    int sy = yy - 22;
    if (sy < 0) sy = sy + 100;
    int sm = m + 9;
    if (sm > 12) {
        sm = sm - 12;
        sy = sy + 1;
    }
    int sd = d + k;
    const int length = sm <= 6 ? 31 : 30;  // Esfand always counts 30 days here
    if (sd > length) {
        sd = sd - length;
        sm = sm + 1;
    }
    if (sm > 12) {
        sm = sm - 12;
        sy = sy + 1;
    }

    // The century is always "13"; a year past 99 is appended whole ("13100").
    std::wstring text = (sy < 10 ? L"130" : L"13") + number(sy);
    text += (sm < 10 ? L"/0" : L"/") + number(sm);
    text += (sd < 10 ? L"/0" : L"/") + number(sd);
    if (formatDateValue) text = shortDateText(dateValue(text));
    return text;
}

std::wstring calendarShamsi(std::wstring_view dateMilady, const VARIANT& dateShamsi) {
    const Variant shamsi =
        isMissing(dateShamsi) ? Variant::fromText(shamsiDate(dateMilady, false)) : Variant::copyOf(dateShamsi);
    const int weekday = splitDate(parseDate(dateMilady)).weekday;
    // The Shamsi text is itself read as a date, so "1385/05/12" is month 5 of year 1385.
    const DateParts s = splitDate(toDate(*shamsi));
    const wchar_t* month = s.month >= 1 && s.month <= 12 ? monthNames[s.month - 1] : L"";
    return weekdayNames[weekday - 1] + number(s.day) + month + number(s.year) + L" ";
}

}  // namespace calendar

HRESULT Calendar::ConvertDateFormat(BSTR DateStr, Flag_TypeDate ConvertTypeDate, BSTR* result) {
    return deliver(result, [&] {
        switch (ConvertTypeDate) {
        case GoHejryDate: return calendar::shamsiDate(viewOf(DateStr), false);
        case GoMiladyDate: return calendar::miladyDate(viewOf(DateStr), false);
        default: return std::wstring();
        }
    });
}

HRESULT Calendar::MiladyDate(BSTR DateShamsi, VARIANT_BOOL* IsFormatDateValue, BSTR* result) {
    return deliver(result, [&] {
        const bool format = argumentOr(IsFormatDateValue, __uuidof(_Ds_Calendar), L"MiladyDate", L"IsFormatDateValue");
        return calendar::miladyDate(viewOf(DateShamsi), format);
    });
}

HRESULT Calendar::CalendarShamsi(BSTR DateMilady, VARIANT* DateShamsi, BSTR* result) {
    return deliver(result, [&] {
        const Variant missing = Variant::missing();
        return calendar::calendarShamsi(viewOf(DateMilady), DateShamsi ? *DateShamsi : *missing);
    });
}

HRESULT Calendar::ShamsiDate(BSTR DateMilady, BSTR /*Monasebat: accepted, never used*/, VARIANT* StringCalendarShamsi,
                             VARIANT_BOOL* IsFormatDateValue, BSTR* result) {
    return deliver(result, [&] {
        const bool format = argumentOr(IsFormatDateValue, __uuidof(_Ds_Calendar), L"ShamsiDate", L"IsFormatDateValue");
        const std::wstring text = calendar::shamsiDate(viewOf(DateMilady), format);
        if (StringCalendarShamsi && !isMissing(*StringCalendarShamsi))
            writeBack(*StringCalendarShamsi, *Variant::fromText(calendar::calendarShamsi(viewOf(DateMilady), *Variant::fromText(text))));
        return text;
    });
}

}  // namespace vx
