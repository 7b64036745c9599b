#include "core/runtime/Ansi.h"

#include <windows.h>

namespace vx {

std::string toAnsi(std::wstring_view text) {
    if (text.empty()) return {};
    int n = WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), nullptr, 0, nullptr, nullptr);
    std::string out(static_cast<size_t>(n > 0 ? n : 0), '\0');
    if (n > 0)
        WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), &out[0], n, nullptr, nullptr);
    return out;
}

std::wstring fromAnsi(std::string_view text) {
    if (text.empty()) return {};
    int n = MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
    std::wstring out(static_cast<size_t>(n > 0 ? n : 0), L'\0');
    if (n > 0) MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), &out[0], n);
    return out;
}

std::string_view cutAtNul(std::string_view text) { return text.substr(0, text.find('\0')); }
std::wstring_view cutAtNul(std::wstring_view text) { return text.substr(0, text.find(L'\0')); }

}  // namespace vx
