#pragma once
// Sorting and changing the host's arrays in place, for Ds_MyVaribleFunction: GetSortArray,
// SetSort, CountArray, GAdd, SetArrayPaste. Arrays are SAFEARRAYs of any element type, one
// or two dimensions, reached through the host's variable (a Variant, a reference to one, or
// a typed array reference); elements are moved as they are, never converted.
#include "core/runtime/Variant.h"

#include <cstdint>
#include <functional>

namespace vx::arrays {

// The elements of the array a Variant holds, every dimension, in memory order, each seen
// as a Variant that holds (without owning) the element's value. Not an array: error 13;
// an unsized array has none.
void forEachElement(const VARIANT& array, const std::function<void(const VARIANT&)>& visit);

// Whether two values are equal as text, ignoring case (IsEqute's comparison), where Null
// equals only Null and a value that has no text (an object, an array) never equals.
bool sameText(const VARIANT& element, const VARIANT& value);

// Sorts the array in place: ascending (or descending), stable, numbers before texts; the
// rows of a two-dimensional array by one column (missing: its first column).
void sortInPlace(const VARIANT& array, LONG sortType, bool caseSensitive, const VARIANT& column);
// A sorted copy of the array, of the same element type, shape and bounds.
Variant sortedCopy(const VARIANT& array, LONG sortType, bool caseSensitive, const VARIANT& column);

// CountArray: the number of elements, or of those equal to findValue as text (when given).
int32_t countElements(const VARIANT& array, const VARIANT* findValue);

// GAdd: appends value to the one-dimensional array in the host's variable (an Empty
// variable becomes an array) and returns its index; with unique, an element equal to it
// as text is found first and its index returned instead.
int32_t append(VARIANT& variable, const VARIANT& value, bool unique);
// SetArrayPaste: inserts the elements of paste (or paste itself) before index (missing:
// after the last element); returns the new upper bound.
int32_t insert(VARIANT& variable, const VARIANT& paste, const VARIANT& index);

}  // namespace vx::arrays
