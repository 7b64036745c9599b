#include "shared/Waits.h"

#include "core/runtime/Convert.h"
#include "core/runtime/MessageLoop.h"
#include "core/runtime/Services.h"
#include "core/runtime/Text.h"
#include "shared/Windows.h"

#include <string>
#include <vector>

namespace vx {

bool isKeyDown(int virtualKey) {
    // The top bit: the key is down now. The bit for "pressed since the last query" is ignored.
    return (static_cast<unsigned short>(service<KeyboardService>().asyncKeyState(virtualKey)) & 0x8000u) != 0;
}

void yieldTimes(LONG count) {
    for (LONG i = 0; i < count; ++i) yieldToHost();
}

void waitDoEvents(const VARIANT& numberWithMultiple, const VARIANT& secondTime) {
    LONG count = 0;
    if (!isMissing(numberWithMultiple))
        count = roundToInt32(toDouble(numberWithMultiple) * 1000.0);
    else if (!isMissing(secondTime))
        count = toInt32(secondTime);
    yieldTimes(count);
}

std::optional<LONG> waitFindWindows(const VARIANT& pathValue, const VARIANT& splitPM, const VARIANT& splitFw) {
    const std::wstring path = toText(pathValue);
    if (trimView(path).empty()) return std::nullopt;
    const std::vector<std::wstring> parts = split(path, toText(splitFw));
    const std::wstring first = parts.empty() ? std::wstring() : parts[0];
    const std::wstring separator = toText(splitPM);
    constexpr int kEndKey = VK_END;
    LONG found = 0;
    do {
        yieldToHost();
        found = window::resolvePath(first, separator);
        if (isKeyDown(kEndKey)) return std::nullopt;  // the End key gives up the wait
    } while (found == 0);
    if (parts.size() == 2) found = window::keyedChild(found, parts[1]);
    return found;
}

}  // namespace vx
