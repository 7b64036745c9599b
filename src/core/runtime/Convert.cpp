#include "core/runtime/Convert.h"

#include "core/runtime/Errors.h"
#include "core/runtime/Text.h"

#include <cmath>
#include <cwctype>

namespace vx {

namespace {

// The checks every conversion makes before asking the runtime.
void precheck(const VARIANT& d) {
    switch (V_VT(&d) & ~VT_BYREF) {
    case VT_NULL: raise(err::InvalidUseOfNull);
    case VT_DISPATCH:
    case VT_UNKNOWN:
        if (!dispatchOf(d) && !(V_VT(&d) == VT_UNKNOWN && V_UNKNOWN(&d))) raise(err::ObjectNotSet);
        break;
    default: break;
    }
}

}  // namespace

bool nonFiniteToWhole(const VARIANT& v, VARTYPE type) noexcept {
    switch (type) {
    case VT_I1: case VT_I2: case VT_I4: case VT_I8: case VT_INT:
    case VT_UI1: case VT_UI2: case VT_UI4: case VT_UI8: case VT_UINT:
    case VT_CY: case VT_DATE: case VT_DECIMAL:
        break;
    default:
        return false;
    }
    const VARIANT& d = deref(v);
    const bool byRef = (V_VT(&d) & VT_BYREF) != 0;
    double value = 0;
    switch (V_VT(&d) & ~VT_BYREF) {
    case VT_R4:
        if (byRef && !V_R4REF(&d)) return false;
        value = byRef ? *V_R4REF(&d) : V_R4(&d);
        break;
    case VT_R8:
    case VT_DATE:  // a date is a double too
        if (byRef && !V_R8REF(&d)) return false;
        value = byRef ? *V_R8REF(&d) : V_R8(&d);
        break;
    default:
        return false;
    }
    return !std::isfinite(value);
}

Variant changeType(const VARIANT& v, VARTYPE type) {
    const VARIANT& d = deref(v);
    precheck(d);
    if (nonFiniteToWhole(d, type)) raise(err::Overflow);
    // An object converts as its default value.
    if (isObject(d)) return changeType(*letValue(d), type);
    Variant out;
    USHORT flags = type == VT_BSTR ? VARIANT_ALPHABOOL : 0;
    HRESULT hr = VariantChangeTypeEx(out.put(), const_cast<VARIANT*>(&d), LOCALE_USER_DEFAULT, flags, type);
    if (FAILED(hr)) raise(conversionErrorNumber(hr));
    return out;
}

int16_t toInt16(const VARIANT& v) { return V_I2(changeType(v, VT_I2).get()); }
int32_t toInt32(const VARIANT& v) { return V_I4(changeType(v, VT_I4).get()); }
double toDouble(const VARIANT& v) { return V_R8(changeType(v, VT_R8).get()); }
bool toBool(const VARIANT& v) { return V_BOOL(changeType(v, VT_BOOL).get()) != VARIANT_FALSE; }

std::wstring toText(const VARIANT& v) {
    const VARIANT& d = deref(v);
    if (V_VT(&d) == VT_BSTR) return std::wstring(viewOf(V_BSTR(&d)));
    if (V_VT(&d) == VT_EMPTY) return {};
    return std::wstring(viewOf(V_BSTR(changeType(d, VT_BSTR).get())));
}

DATE toDate(const VARIANT& v) {
    const VARIANT& d = deref(v);
    if (valueType(d) == VT_BSTR) {
        BSTR s = V_VT(&d) & VT_BYREF ? *V_BSTRREF(&d) : V_BSTR(&d);
        return parseDate(viewOf(s));
    }
    return V_DATE(changeType(d, VT_DATE).get());
}

int16_t roundToInt16(double d) { return toInt16(*Variant::fromDouble(d)); }
int32_t roundToInt32(double d) { return toInt32(*Variant::fromDouble(d)); }

namespace {

bool isLeap(int y) { return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0; }

int daysInMonth(int y, int m) {
    static const int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return m == 2 && isLeap(y) ? 29 : days[m - 1];
}

// Days from 1899-12-30 (day 0 of the automation date) to the given civil date.
long daysFromEpoch(int y, int m, int d) {
    // Howard Hinnant's days_from_civil, shifted to the automation epoch.
    y -= m <= 2;
    const long era = (y >= 0 ? y : y - 399) / 400;
    const long yoe = y - era * 400;
    const long doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const long doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    const long unixDays = era * 146097 + doe - 719468;
    return unixDays + 25569;  // 1970-01-01 is automation day 25569
}

// Adds a time of day to a date serial, following the automation date's rule that the
// fraction of a negative serial counts forward from its day too.
DATE withTime(double daySerial, double fraction) {
    return daySerial < 0 ? daySerial - fraction : daySerial + fraction;
}

bool readDigits(std::wstring_view s, size_t& pos, size_t minCount, size_t maxCount, int& value) {
    size_t start = pos;
    value = 0;
    while (pos < s.size() && pos - start < maxCount && s[pos] >= L'0' && s[pos] <= L'9')
        value = value * 10 + (s[pos++] - L'0');
    return pos - start >= minCount;
}

}  // namespace

bool makeDate(int year, int month, int day, DATE& out) {
    if (year < 100 || year > 9999 || month < 1 || month > 12 || day < 1 || day > daysInMonth(year, month))
        return false;
    out = static_cast<DATE>(daysFromEpoch(year, month, day));
    return true;
}

DATE parseDate(std::wstring_view text) {
    std::wstring_view s = trimView(text);
    // Year, month, day when the first field is four digits long.
    size_t pos = 0;
    int y = 0, m = 0, d = 0;
    if (readDigits(s, pos, 4, 4, y) && pos < s.size() && (s[pos] == L'/' || s[pos] == L'-' || s[pos] == L'.')) {
        const wchar_t sep = s[pos++];
        if (!readDigits(s, pos, 1, 2, m) || pos >= s.size() || s[pos] != sep) raise(err::TypeMismatch);
        ++pos;
        if (!readDigits(s, pos, 1, 2, d)) raise(err::TypeMismatch);
        if (pos < s.size() && s[pos] >= L'0' && s[pos] <= L'9') raise(err::TypeMismatch);
        DATE date;
        if (!makeDate(y, m, d, date)) raise(err::TypeMismatch);
        std::wstring_view rest = trimView(s.substr(pos));
        if (rest.empty()) return date;
        // A time of day may follow.
        DATE t = 0;
        Bstr timeText(rest);
        if (FAILED(VarDateFromStr(timeText.get(), LOCALE_USER_DEFAULT, 0, &t)) || t < 0 || t >= 1)
            raise(err::TypeMismatch);
        return withTime(date, t);
    }
    Bstr b(s);
    DATE out = 0;
    if (s.empty() || FAILED(VarDateFromStr(b.get(), LOCALE_USER_DEFAULT, 0, &out))) raise(err::TypeMismatch);
    return out;
}

DateParts splitDate(DATE d) {
    SYSTEMTIME st{};
    if (!VariantTimeToSystemTime(d, &st)) raise(err::InvalidCall);
    return DateParts{st.wYear, st.wMonth, st.wDay, st.wHour, st.wMinute, st.wSecond, st.wDayOfWeek + 1};
}

std::wstring shortDateText(DATE d) {
    // The time of day counts forward from the day's start, before 1899-12-30 too.
    Bstr text;
    HRESULT hr = VarBstrFromDate(std::trunc(d), LOCALE_USER_DEFAULT, VAR_DATEVALUEONLY, text.put());
    if (FAILED(hr)) raise(conversionErrorNumber(hr));
    return text.str();
}

Variant letValue(const VARIANT& v) {
    const VARIANT& d = deref(v);
    VARTYPE t = V_VT(&d) & ~VT_BYREF;
    if (t != VT_DISPATCH && t != VT_UNKNOWN) return Variant::copyOf(d);
    Variant current = Variant::copyOf(d);
    // The default property of an object may itself be an object: follow it a few steps.
    for (int depth = 0; depth < 4; ++depth) {
        VARTYPE ct = current.type();
        if (ct != VT_DISPATCH && ct != VT_UNKNOWN) return current;
        IDispatch* disp = nullptr;
        if (ct == VT_DISPATCH) {
            disp = V_DISPATCH(current.get());
            if (!disp) raise(err::ObjectNotSet);
            disp->AddRef();
        } else {
            IUnknown* unk = V_UNKNOWN(current.get());
            if (!unk) raise(err::ObjectNotSet);
            if (FAILED(unk->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&disp)))) raise(err::NotSupported);
        }
        DISPPARAMS none{nullptr, nullptr, 0, 0};
        Variant value;
        EXCEPINFO ei{};
        HRESULT hr = disp->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none,
                                  value.put(), &ei, nullptr);
        disp->Release();
        SysFreeString(ei.bstrSource);
        SysFreeString(ei.bstrDescription);
        SysFreeString(ei.bstrHelpFile);
        if (FAILED(hr)) raise(err::NotSupported);
        current = std::move(value);
    }
    raise(err::NotSupported);
}

bool isNumeric(const VARIANT& v) {
    const VARIANT& d = deref(v);
    switch (V_VT(&d) & ~VT_BYREF) {
    case VT_I1: case VT_I2: case VT_I4: case VT_I8: case VT_INT:
    case VT_UI1: case VT_UI2: case VT_UI4: case VT_UI8: case VT_UINT:
    case VT_R4: case VT_R8: case VT_CY: case VT_DECIMAL: case VT_BOOL: case VT_EMPTY:
        return true;
    case VT_BSTR: {
        Variant out;
        return SUCCEEDED(VariantChangeTypeEx(out.put(), const_cast<VARIANT*>(&d), LOCALE_USER_DEFAULT, 0, VT_R8));
    }
    default:
        return false;
    }
}

}  // namespace vx
