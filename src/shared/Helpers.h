#pragma once
// The string and array helpers of Ds_MyVaribleFunction as plain functions, for the class
// itself and for every other class that needs them (the registry objects cut paths with
// GetVar, the clipboard compares with IsEqute and measures with CountUBound).
#include "core/runtime/Variant.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace vx {

// GetVar: the text split at every separator (case matters; fields count from 0), and mode
// (Flag_PathClip) picks: LastID the last field, SelectID field index, LeftPathFull all
// before the last separator, RightPathFull all after the first, EnumIDPath fields index
// to the last joined again, EnumFirstToLast fields index to lastIndex joined again. An
// array is joined by the separator instead: element (i, index) of each row of a table, or
// each element when index is -1. Never raises: a step that fails is skipped, so what
// cannot be had is Empty.
Variant getVar(const VARIANT& data, const VARIANT& index, const VARIANT& separator, LONG mode,
               const VARIANT& lastIndex);
// The part of a path before its last backslash ("" when it has none): GetVar's
// LeftPathFull with "\".
std::wstring parentPath(std::wstring_view path);

// IsEqute: compares two values as mode (Type_IsEquate) says: GoText equal as text ignoring
// case; GoArray two arrays of one size where every element has an equal in the other;
// GoArrayJustCount equal element by element; GoArrayJustText True when a is NOT among b's
// elements; GoLeft, GoRight a starts, ends with b; GoFind b occurs in a, and both are
// lower-cased in the caller's variables. Any other mode: False. Errors: 13 for an array
// compared as text or a value given to an array mode, 9 for an unsized array, 94 for Null
// in GoLeft and GoRight.
bool isEqute(VARIANT* a, VARIANT* b, LONG mode);

// CountUBound: the upper bound of the first dimension; -1 for an unsized or empty array,
// anything that is not an array, or a bound beyond an Integer.
int16_t countUBound(const VARIANT& array) noexcept;

}  // namespace vx
