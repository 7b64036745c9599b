#include "core/runtime/FilePaths.h"

#include "core/runtime/Platform.h"

namespace vx {

std::wstring fullPathName(std::wstring_view name) {
    const std::wstring given(name);
    if (given.empty() || given.find(L'\0') != std::wstring::npos) return given;
    const DWORD size = GetFullPathNameW(given.c_str(), 0, nullptr, nullptr);
    if (!size) return given;
    std::wstring path(size, L'\0');
    const DWORD length = GetFullPathNameW(given.c_str(), size, &path[0], nullptr);
    if (!length || length >= size) return given;
    path.resize(length);
    return path;
}

}  // namespace vx
