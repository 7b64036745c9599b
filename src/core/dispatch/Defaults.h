#pragma once
// The defaults that optional parameters declare in the type library, for C++ code that
// applies one itself: a caller through the vtable (another class, a test, an early-bound
// host that passes null for an optional reference) leaves the parameter out, and the member
// must then use what the type library promises a late-bound caller.
//
//     const VARIANT& sep = declaredDefault(IID__Ds_MyVaribleFunction, L"GetVar", L"sFind");  // ","
//     bool withTime = argumentOr(IsWantHour, IID__Ds_SysTime, L"ConvertDateSystemTime", L"IsWantHour");
//
// Read from the embedded type library on first use and kept for the module's life.
#include "core/runtime/Platform.h"

#include <string>
#include <string_view>

namespace vx {

// The default of parameter `parameter` of member `member` of interface `iface`. A member
// or parameter the type library does not have, or one without a default, is error 51.
const VARIANT& declaredDefault(REFIID iface, std::wstring_view member, std::wstring_view parameter);

// An optional parameter as a member reads it: what the caller passed, or the declared
// default when it was left out (a null pointer from a caller through the vtable; for a
// Variant also the missing-argument marker). A Variant passed is read through a reference.
const VARIANT& argumentOr(const VARIANT* arg, REFIID iface, std::wstring_view member, std::wstring_view parameter);
LONG argumentOr(const LONG* arg, REFIID iface, std::wstring_view member, std::wstring_view parameter);
bool argumentOr(const VARIANT_BOOL* arg, REFIID iface, std::wstring_view member, std::wstring_view parameter);
std::wstring argumentOr(const BSTR* arg, REFIID iface, std::wstring_view member, std::wstring_view parameter);

}  // namespace vx
