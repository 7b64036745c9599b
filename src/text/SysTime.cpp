#include "text/SysTime.h"

#include "core/dispatch/Defaults.h"
#include "core/runtime/Checked.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/Services.h"
#include "shared/DateText.h"

#include <string>

namespace vx {

namespace {

// The present number of seconds since midnight (UTC), rounded to a whole number as the
// runtime rounds (half to even).
int32_t secondsSinceMidnight() {
    SYSTEMTIME now{};
    service<ClockService>().getSystemTime(&now);
    const double seconds = now.wHour * 3600.0 + now.wMinute * 60.0 + now.wSecond + now.wMilliseconds / 1000.0;
    return roundToInt32(seconds);
}

}  // namespace

HRESULT SysTime::GetVarKeepTime(VARIANT* result) {
    return deliver(result, [&] {
        service<ClockService>().getSystemTime(&kept_);
        return Variant();
    });
}

HRESULT SysTime::SetVarNewTime(VARIANT* result) {
    return deliver(result, [&] {
        service<ClockService>().setSystemTime(&kept_);  // a refused change is not an error
        return Variant();
    });
}

HRESULT SysTime::ConvertDateSystemTime(Vx_SYSTEMTIME* GetDateSys, VARIANT_BOOL* IsWantHour, VARIANT* result) {
    return deliver(result, [&] {
        const bool withTime = argumentOr(IsWantHour, __uuidof(_Ds_SysTime), L"ConvertDateSystemTime", L"IsWantHour");
        return Variant::fromText(systemTimeText(required(GetDateSys), withTime));
    });
}

HRESULT SysTime::SetTimeSys(VARIANT* wYear, VARIANT* wMonth, VARIANT* wDay, VARIANT* wDayOfWeek, VARIANT* wHour,
                            VARIANT* wMinute, VARIANT* wSecond, VARIANT* wMilliseconds, VARIANT* result) {
    return deliver(result, [&] {
        SYSTEMTIME now{};
        service<ClockService>().getSystemTime(&now);
        SYSTEMTIME t = now;
        // An omitted or Null field keeps its present value; the others must be Integers.
        auto field = [](const VARIANT* arg, WORD& slot) {
            if (!arg || isMissing(*arg) || isNull(*arg)) return;
            slot = static_cast<WORD>(toInt16(*arg));
        };
        // The fields are read in this order, so that the first one that fails is the error.
        field(wDay, t.wDay);
        field(wYear, t.wYear);
        field(wHour, t.wHour);
        field(wMonth, t.wMonth);
        field(wMinute, t.wMinute);
        field(wSecond, t.wSecond);
        field(wDayOfWeek, t.wDayOfWeek);
        field(wMilliseconds, t.wMilliseconds);
        service<ClockService>().setSystemTime(&t);  // a refused change is not an error
        return Variant();
    });
}

HRESULT SysTime::GetTimerRun(LONG NumSecond, VARIANT_BOOL* result) {
    return deliver(result, [&] {
        if (!countdownRunning_) {
            countdownRunning_ = true;
            countdownLength_ = NumSecond;
            countdownStart_ = secondsSinceMidnight();
            return true;
        }
        // The length given when the countdown began counts; NumSecond is not read now. The
        // clock starts again from 0 at midnight, so a countdown across midnight runs on
        // until the clock of a later day passes its end.
        const int32_t now = secondsSinceMidnight();
        const int32_t end = (Checked<int32_t>(countdownStart_) + countdownLength_).value();
        if (end >= now) return false;
        countdownRunning_ = false;
        return true;
    });
}

}  // namespace vx
