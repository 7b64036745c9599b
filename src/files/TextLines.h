#pragma once
// Text files as the runtime's line input reads them: the bytes of the file in the ANSI
// code page, a line ending at a carriage return or at a carriage return and line feed (a
// line feed alone stays in its line), the last line ending at the end of the file.
#include "core/runtime/Variant.h"

#include <string>
#include <string_view>
#include <vector>

namespace vx::files {

// Calls f(start, length) for each line of bytes, in order; returns the number of lines.
template <class F>
size_t forEachLine(std::string_view bytes, F&& f) {
    size_t count = 0, start = 0;
    while (start < bytes.size()) {
        size_t end = bytes.find('\r', start);
        if (end == std::string_view::npos) end = bytes.size();
        f(start, end - start);
        ++count;
        start = end + 1;
        if (start < bytes.size() && bytes[start] == '\n' && end < bytes.size()) ++start;
    }
    return count;
}

// The lines of bytes as text.
std::vector<std::wstring> textLines(std::string_view bytes);

// The lines of bytes as a one-dimensional array from 0 of elementType (VT_VARIANT holding
// strings, or VT_BSTR), made at its final size.
Variant lineArray(std::string_view bytes, VARTYPE elementType);

}  // namespace vx::files
