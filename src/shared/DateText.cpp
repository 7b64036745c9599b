#include "shared/DateText.h"

#include <cstring>

namespace vx {

std::wstring systemTimeText(const Vx_SYSTEMTIME& t, bool withTimeOfDay) {
    std::wstring text = std::to_wstring(t.wYear) + L'/' + std::to_wstring(t.wMonth) + L'/' + std::to_wstring(t.wDay);
    if (withTimeOfDay)
        text += L' ' + std::to_wstring(t.wHour) + L':' + std::to_wstring(t.wMinute) + L':' + std::to_wstring(t.wSecond);
    return text;
}

std::wstring systemTimeText(const SYSTEMTIME& time, bool withTimeOfDay) {
    static_assert(sizeof(Vx_SYSTEMTIME) == sizeof(SYSTEMTIME), "the library's SYSTEMTIME is the system's");
    Vx_SYSTEMTIME record;
    std::memcpy(&record, &time, sizeof record);
    return systemTimeText(record, withTimeOfDay);
}

}  // namespace vx
