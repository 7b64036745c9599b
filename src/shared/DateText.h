#pragma once
// A clock reading as text, as Ds_SysTime.ConvertDateSystemTime writes it and print jobs
// show their times: "2006/8/3", or "2006/8/3 9:5:0" with the time of day; unpadded
// numbers, the fields read as the library's SYSTEMTIME record holds them (16-bit signed).
#include "Vx_Main.h"

#include <string>

namespace vx {

std::wstring systemTimeText(const Vx_SYSTEMTIME& time, bool withTimeOfDay);
// The operating system's own record (the same layout, its fields read as signed).
std::wstring systemTimeText(const SYSTEMTIME& time, bool withTimeOfDay);

}  // namespace vx
