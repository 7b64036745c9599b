#include "files/TextLines.h"

#include "core/runtime/Ansi.h"
#include "core/runtime/Errors.h"
#include "core/runtime/Handles.h"

#include <new>

namespace vx::files {

namespace {

// ANSI text as a new string. Text below 0x80 is the same in every ANSI code page and
// is widened as it is; the rest goes through the code page.
BSTR ansiText(const char* data, size_t length) {
    size_t plain = 0;
    while (plain < length && static_cast<unsigned char>(data[plain]) < 0x80) ++plain;
    if (plain == length) {
        BSTR text = SysAllocStringLen(nullptr, static_cast<UINT>(length));
        if (!text) throw std::bad_alloc();
        for (size_t i = 0; i < length; ++i) text[i] = static_cast<unsigned char>(data[i]);
        return text;
    }
    const std::wstring wide = fromAnsi(std::string_view(data, length));
    BSTR text = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
    if (!text) throw std::bad_alloc();
    return text;
}

}  // namespace

std::vector<std::wstring> textLines(std::string_view bytes) {
    std::vector<std::wstring> lines;
    forEachLine(bytes, [&](size_t start, size_t length) { lines.push_back(fromAnsi(bytes.substr(start, length))); });
    return lines;
}

Variant lineArray(std::string_view bytes, VARTYPE elementType) {
    const size_t count = forEachLine(bytes, [](size_t, size_t) {});
    if (count > 0x7FFFFFFF) raise(err::OutOfMemory);
    SAFEARRAY* array = SafeArrayCreateVector(elementType, 0, static_cast<ULONG>(count));
    if (!array) throw std::bad_alloc();
    Variant result;
    V_VT(result.get()) = static_cast<VARTYPE>(VT_ARRAY | elementType);
    V_ARRAY(result.get()) = array;
    SafeArrayAccess access(array);
    size_t i = 0;
    forEachLine(bytes, [&](size_t start, size_t length) {
        BSTR line = ansiText(bytes.data() + start, length);
        if (elementType == VT_BSTR) {
            access.as<BSTR>()[i++] = line;
        } else {
            VARIANT& element = access.as<VARIANT>()[i++];
            V_VT(&element) = VT_BSTR;
            V_BSTR(&element) = line;
        }
    });
    return result;
}

}  // namespace vx::files
