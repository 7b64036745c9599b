#pragma once
// Ds_SysTime: reads and sets the computer's clock, always in Coordinated Universal Time,
// and offers a countdown that the host polls.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"

#include <cstdint>

namespace vx {

class SysTime : public DispatchObject<SysTime, _Ds_SysTime> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_SysTime; }

    HRESULT STDMETHODCALLTYPE GetVarKeepTime(VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE SetVarNewTime(VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE ConvertDateSystemTime(Vx_SYSTEMTIME* GetDateSys, VARIANT_BOOL* IsWantHour,
                                                    VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE SetTimeSys(VARIANT* wYear, VARIANT* wMonth, VARIANT* wDay, VARIANT* wDayOfWeek,
                                         VARIANT* wHour, VARIANT* wMinute, VARIANT* wSecond, VARIANT* wMilliseconds,
                                         VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE GetTimerRun(LONG NumSecond, VARIANT_BOOL* result) override;

private:
    SYSTEMTIME kept_{};              // all zeros until GetVarKeepTime
    int32_t countdownStart_ = 0;     // seconds since midnight when the countdown began
    int32_t countdownLength_ = 0;
    bool countdownRunning_ = false;
};

}  // namespace vx
