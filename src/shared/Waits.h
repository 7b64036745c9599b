#pragma once
// Waiting as every class waits: by counted yields to the host's message loop, never by
// sleeping or reading a clock, with the End key as the one way out of an endless wait.
#include "core/runtime/Platform.h"
#include "core/runtime/Variant.h"

#include <optional>

namespace vx {

// IsKey: whether the key with this virtual-key code is down now (through the keyboard seam).
bool isKeyDown(int virtualKey);

// Yields to the host count times (none for 0 or less).
void yieldTimes(LONG count);
// WaitDoEvents: numberWithMultiple x 1000 yields (rounded), or, when it is omitted,
// secondTime yields; neither: none.
void waitDoEvents(const VARIANT& numberWithMultiple, const VARIANT& secondTime);

// WaitFindWindows: yields until the window path before the first splitFw names a window
// (steps separated by splitPM), looking once per yield. With two parts, the window is then
// the child keyed by the second part among the found window's children (Out_Both keys;
// error 5 when there is none). No window (nullopt) for a blank path, or when the End key
// is held while waiting.
std::optional<LONG> waitFindWindows(const VARIANT& path, const VARIANT& splitPM, const VARIANT& splitFw);

}  // namespace vx
