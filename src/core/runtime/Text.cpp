#include "core/runtime/Text.h"

#include "core/runtime/Errors.h"

#include <windows.h>

namespace vx {

namespace {

std::wstring mapCase(LCID locale, DWORD flags, std::wstring_view s) {
    if (s.empty()) return {};
    int n = LCMapStringW(locale, flags, s.data(), static_cast<int>(s.size()), nullptr, 0);
    if (n <= 0) return std::wstring(s);
    std::wstring out(static_cast<size_t>(n), L'\0');
    LCMapStringW(locale, flags, s.data(), static_cast<int>(s.size()), &out[0], n);
    return out;
}

// The text compared, in the form matching works on.
std::wstring comparable(std::wstring_view s, Compare mode) {
    return mode == Compare::Text ? lower(s) : std::wstring(s);
}

}  // namespace

std::wstring lower(std::wstring_view s) { return mapCase(LOCALE_USER_DEFAULT, LCMAP_LOWERCASE, s); }
std::wstring upper(std::wstring_view s) { return mapCase(LOCALE_USER_DEFAULT, LCMAP_UPPERCASE, s); }
std::wstring foldCase(std::wstring_view s) {
    // Plain ASCII (most keys) folds A-Z alone; anything else goes to the system's table.
    std::wstring out(s);
    for (wchar_t& c : out) {
        if (c >= 0x80) return mapCase(LOCALE_INVARIANT, LCMAP_LOWERCASE, s);
        if (c >= L'A' && c <= L'Z') c = static_cast<wchar_t>(c + (L'a' - L'A'));
    }
    return out;
}

bool equalText(std::wstring_view a, std::wstring_view b, Compare mode) {
    if (mode == Compare::Binary) return a == b;
    return lower(a) == lower(b);
}

std::wstring_view trimView(std::wstring_view s) {
    size_t b = s.find_first_not_of(L' ');
    if (b == std::wstring_view::npos) return {};
    size_t e = s.find_last_not_of(L' ');
    return s.substr(b, e - b + 1);
}

std::wstring trim(std::wstring_view s) { return std::wstring(trimView(s)); }

std::wstring ltrim(std::wstring_view s) {
    size_t b = s.find_first_not_of(L' ');
    return b == std::wstring_view::npos ? std::wstring() : std::wstring(s.substr(b));
}

std::wstring rtrim(std::wstring_view s) {
    size_t e = s.find_last_not_of(L' ');
    return e == std::wstring_view::npos ? std::wstring() : std::wstring(s.substr(0, e + 1));
}

std::wstring left(std::wstring_view s, long length) {
    if (length < 0) raise(err::InvalidCall);
    return std::wstring(s.substr(0, static_cast<size_t>(length)));
}

std::wstring right(std::wstring_view s, long length) {
    if (length < 0) raise(err::InvalidCall);
    size_t n = std::min(s.size(), static_cast<size_t>(length));
    return std::wstring(s.substr(s.size() - n));
}

std::wstring mid(std::wstring_view s, long start, long length) {
    if (start < 1 || length < -1) raise(err::InvalidCall);
    size_t from = static_cast<size_t>(start - 1);
    if (from >= s.size()) return {};
    return std::wstring(length < 0 ? s.substr(from) : s.substr(from, static_cast<size_t>(length)));
}

long inStr(long start, std::wstring_view s, std::wstring_view find, Compare mode) {
    if (start < 1) raise(err::InvalidCall);
    size_t from = static_cast<size_t>(start - 1);
    if (from > s.size() || s.empty()) return 0;
    if (find.empty()) return start;
    std::wstring hay = comparable(s, mode), needle = comparable(find, mode);
    size_t at = hay.find(needle, from);
    return at == std::wstring::npos ? 0 : static_cast<long>(at + 1);
}

long inStr(std::wstring_view s, std::wstring_view find, Compare mode) { return inStr(1, s, find, mode); }

std::vector<std::wstring> split(std::wstring_view s, std::wstring_view delimiter, long limit, Compare mode) {
    std::vector<std::wstring> out;
    if (limit < -1) raise(err::InvalidCall);
    if (s.empty() || limit == 0) return out;
    if (delimiter.empty() || limit == 1) {
        out.emplace_back(s);
        return out;
    }
    std::wstring hay = comparable(s, mode), needle = comparable(delimiter, mode);
    size_t from = 0;
    for (;;) {
        if (limit > 0 && static_cast<long>(out.size()) == limit - 1) break;
        size_t at = hay.find(needle, from);
        if (at == std::wstring::npos) break;
        out.emplace_back(s.substr(from, at - from));
        from = at + delimiter.size();
    }
    out.emplace_back(s.substr(from));
    return out;
}

std::wstring join(const std::vector<std::wstring>& parts, std::wstring_view delimiter) {
    std::wstring out;
    for (size_t i = 0; i < parts.size(); ++i) {
        if (i) out.append(delimiter);
        out.append(parts[i]);
    }
    return out;
}

std::wstring replace(std::wstring_view s, std::wstring_view find, std::wstring_view with, Compare mode) {
    if (find.empty()) return std::wstring(s);
    std::wstring hay = comparable(s, mode), needle = comparable(find, mode);
    std::wstring out;
    size_t from = 0;
    for (size_t at; (at = hay.find(needle, from)) != std::wstring::npos; from = at + find.size()) {
        out.append(s.substr(from, at - from));
        out.append(with);
    }
    out.append(s.substr(from));
    return out;
}

}  // namespace vx
