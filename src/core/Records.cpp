// The shared records' layouts are part of the contract (several go to the operating
// system unchanged): the compiler checks them against the type library's header.
#include "Vx_Main.h"

#include <cstddef>

static_assert(sizeof(Vx_SYSTEMTIME) == 16, "SYSTEMTIME is 16 bytes");
static_assert(offsetof(Vx_SYSTEMTIME, wDay) == 6 && offsetof(Vx_SYSTEMTIME, wMilliseconds) == 14,
              "SYSTEMTIME fields in the operating system's order");
static_assert(sizeof(Vx_SYSTEMTIME) == sizeof(SYSTEMTIME), "SYSTEMTIME matches the operating system's");

static_assert(sizeof(Vx_MIXERCONTROL) == 152, "MIXERCONTROL is 152 bytes, four more than the system's");
static_assert(offsetof(Vx_MIXERCONTROL, cMultipleItems) == 16, "cMultipleItems at 16");
static_assert(offsetof(Vx_MIXERCONTROL, szShortName) == 20, "szShortName at 20");
static_assert(offsetof(Vx_MIXERCONTROL, szName) == 36, "szName at 36");
static_assert(offsetof(Vx_MIXERCONTROL, lMinimum) == 100, "lMinimum at 100");
static_assert(offsetof(Vx_MIXERCONTROL, lMaximum) == 104, "lMaximum at 104");
static_assert(offsetof(Vx_MIXERCONTROL, Reserved) == 108 && sizeof(Vx_MIXERCONTROL::Reserved) == 44,
              "eleven reserved words at 108");

static_assert(sizeof(Vx_POINTAPI) == 8 && offsetof(Vx_POINTAPI, y) == 4, "POINTAPI is two longs");
static_assert(sizeof(Vx_RECT) == 16 && offsetof(Vx_RECT, bottom) == 12, "RECT is four longs");
static_assert(sizeof(Vx_RECT) == sizeof(RECT), "RECT matches the operating system's");

static_assert(sizeof(Vx_PingOptions) == 8, "PingOptions is 8 bytes");
static_assert(offsetof(Vx_PingOptions, OptionsSize) == 3 && offsetof(Vx_PingOptions, OptionsData) == 4,
              "PingOptions: four bytes, then a long");

static_assert(offsetof(Vx_GetPingInfo, DataPointer) == 16 && offsetof(Vx_GetPingInfo, Options) == 20,
              "GetPingInfo: the echo reply's fields");
#if defined(_WIN64)
static_assert(offsetof(Vx_GetPingInfo, Data) == 32, "GetPingInfo.Data: a pointer, aligned on 64-bit");
#else
static_assert(offsetof(Vx_GetPingInfo, Data) == 28 && sizeof(Vx_GetPingInfo) == 32,
              "GetPingInfo: the 28-byte echo reply, then Data");
#endif
