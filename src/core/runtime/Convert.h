#pragma once
// Conversions with the automation runtime's rules, as a host sees them in CInt, CLng,
// CDbl, CBool, CStr and CDate: integers round half to even and are overflow-checked
// (error 6), what cannot be converted is a type mismatch (13), Null is an invalid use
// of Null (94), and an object stands for its default property.
#include "core/runtime/Variant.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace vx {

int16_t toInt16(const VARIANT& v);
int32_t toInt32(const VARIANT& v);
double toDouble(const VARIANT& v);
bool toBool(const VARIANT& v);
std::wstring toText(const VARIANT& v);
// A date; text is read by parseDate.
DATE toDate(const VARIANT& v);

// Rounds half to even and checks the range, as CInt and CLng do.
int16_t roundToInt16(double d);
int32_t roundToInt32(double d);

// Converts to the given variant type with the runtime's errors.
Variant changeType(const VARIANT& v, VARTYPE type);

// Whether a conversion of v to type would have to make a whole number (or a date) of
// NaN or an infinity: an overflow (error 6), which the platform's conversion may miss
// (Wine's gives NaN as 2147483647).
bool nonFiniteToWhole(const VARIANT& v, VARTYPE type) noexcept;

// Reads text as a date with the locale's date parser, except that a text whose first
// field has four digits is always year, month, day ("1385/05/12", "2006-8-3 9:05"),
// whatever the locale's order. Not a date: error 13.
DATE parseDate(std::wstring_view text);

// The value a Let assignment stores into a Variant: an object stands for its default
// property (Nothing is error 91, an object without one 438); everything else is copied,
// the missing-argument marker included.
Variant letValue(const VARIANT& v);

// Calendar fields of a date (the proleptic Gregorian calendar of the automation runtime).
struct DateParts {
    int year, month, day, hour, minute, second;
    int weekday;  // 1 = Sunday ... 7 = Saturday
};
DateParts splitDate(DATE d);
// FormatDateTime with the short-date format: the date part of d written in the user's
// short-date format ("8/3/2006" in en-US, "03.08.2006" in de-DE), as CStr writes a date
// without a time of day.
std::wstring shortDateText(DATE d);
// A date from its fields; false when they do not form a valid date of years 100 to 9999.
bool makeDate(int year, int month, int day, DATE& out);

// IsNumeric: a number, a Boolean, Empty, or text the runtime can read as a number.
bool isNumeric(const VARIANT& v);

}  // namespace vx
