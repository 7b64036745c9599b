#include "text/Words.h"

#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/Platform.h"
#include "core/runtime/Text.h"
#include "text/Arrays.h"

#include <cmath>
#include <unordered_map>

namespace vx::words {

namespace {

constexpr wchar_t kZeroWidthNonJoiner = 0x200C;
constexpr wchar_t kZeroWidthJoiner = 0x200D;
constexpr wchar_t kRightQuote = 0x2019;
constexpr wchar_t kTatweel = 0x0640;
constexpr wchar_t kArabicDecimalSeparator = 0x066B;
constexpr wchar_t kArabicThousandsSeparator = 0x066C;
constexpr wchar_t kArabicIndicZero = 0x0660;
constexpr wchar_t kPersianZero = 0x06F0;

bool isArabicIndicDigit(wchar_t c) { return c >= kArabicIndicZero && c <= kArabicIndicZero + 9; }
bool isPersianDigit(wchar_t c) { return c >= kPersianZero && c <= kPersianZero + 9; }
bool isAsciiLetterOrDigit(wchar_t c) {
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9');
}

WORD characterType(DWORD kind, wchar_t c) {
    WORD type = 0;
    GetStringTypeW(kind, &c, 1, &type);
    return type;
}

bool isDigit(wchar_t c) {
    if (c < 0x80) return c >= L'0' && c <= L'9';
    return isArabicIndicDigit(c) || isPersianDigit(c) || (characterType(CT_CTYPE1, c) & C1_DIGIT);
}

// A letter, a digit or a combining mark, of any script.
bool isWordCharacter(wchar_t c) {
    if (c < 0x80) return isAsciiLetterOrDigit(c);
    if (c == kTatweel || (c >= 0x064B && c <= 0x065F) || c == 0x0670) return true;  // Arabic marks
    if (c >= 0xD800 && c <= 0xDFFF) return false;
    if (characterType(CT_CTYPE1, c) & (C1_ALPHA | C1_DIGIT)) return true;
    return (characterType(CT_CTYPE3, c) & C3_NONSPACING) != 0;
}

// What joins two word characters into one word, and what joins two digits.
bool joinsLetters(wchar_t c) {
    return c == kZeroWidthNonJoiner || c == kZeroWidthJoiner || c == L'\'' || c == kRightQuote || c == L'-';
}
bool joinsDigits(wchar_t c) {
    return c == L'.' || c == L',' || c == L'/' || c == kArabicDecimalSeparator || c == kArabicThousandsSeparator;
}

// The text lower-cased character by character, so that positions stay where they were.
std::wstring folded(std::wstring_view text) {
    std::wstring out(text);
    if (!out.empty()) CharLowerBuffW(&out[0], static_cast<DWORD>(out.size()));
    return out;
}

// Where find occurs in text, left to right without overlaps; with wholeWord, only where
// the occurrence neither starts nor ends inside a word.
std::vector<size_t> occurrences(std::wstring_view text, std::wstring_view find, bool wholeWord, bool caseSensitive) {
    std::vector<size_t> found;
    if (find.empty() || find.size() > text.size()) return found;
    std::vector<bool> inside;
    if (wholeWord) {
        inside.assign(text.size() + 1, false);
        for (const Span& w : wordSpans(text))
            for (size_t p = w.begin + 1; p < w.end; ++p) inside[p] = true;
    }
    const std::wstring hay = caseSensitive ? std::wstring(text) : folded(text);
    const std::wstring needle = caseSensitive ? std::wstring(find) : folded(find);
    size_t pos = 0;
    while ((pos = hay.find(needle, pos)) != std::wstring::npos) {
        const size_t end = pos + needle.size();
        if (!wholeWord || (!inside[pos] && !inside[end])) {
            found.push_back(pos);
            pos = end;
        } else {
            ++pos;
        }
    }
    return found;
}

int32_t countOf(size_t n) { return n > 0x7FFFFFFF ? 0x7FFFFFFF : static_cast<int32_t>(n); }

// ---- durations ----

constexpr long long kLargestSeconds = 1LL << 53;

long long checkedSeconds(long double seconds) {
    if (!(std::fabs(seconds) <= static_cast<long double>(kLargestSeconds))) raise(err::Overflow);
    return static_cast<long long>(seconds);
}

// A whole number of English digits (after the Persian ones became English).
long long wholeNumber(std::wstring_view digits) {
    if (digits.empty() || digits.size() > 16) raise(digits.empty() ? err::TypeMismatch : err::Overflow);
    long long n = 0;
    for (wchar_t c : digits) {
        if (c < L'0' || c > L'9') raise(err::TypeMismatch);
        n = n * 10 + (c - L'0');
    }
    return n;
}

// "h:m" or "h:m:s", blanks around, a sign in front; "" is no time.
long long secondsOfText(std::wstring_view text) {
    std::wstring t = convertDigits(trim(text), true);
    if (t.empty()) return 0;
    bool negative = false;
    if (t[0] == L'-' || t[0] == L'+') {
        negative = t[0] == L'-';
        t.erase(0, 1);
    }
    const std::vector<std::wstring> parts = split(t, L":");
    if (parts.size() < 2 || parts.size() > 3) raise(err::TypeMismatch);
    long double seconds = static_cast<long double>(wholeNumber(parts[0])) * 3600 + wholeNumber(parts[1]) * 60.0L;
    if (parts.size() == 3) seconds += wholeNumber(parts[2]);
    return checkedSeconds(negative ? -seconds : seconds);
}

long long secondsOf(const VARIANT& value) {
    const VARIANT& v = deref(value);
    switch (V_VT(&v)) {
    case VT_EMPTY: return 0;
    case VT_NULL: raise(err::InvalidUseOfNull);
    case VT_BSTR: return secondsOfText(viewOf(V_BSTR(&v)));
    case VT_DATE: return checkedSeconds(std::nearbyint(static_cast<long double>(V_DATE(&v)) * 86400));
    case VT_I1: case VT_UI1: case VT_I2: case VT_UI2: case VT_I4: case VT_UI4: case VT_I8: case VT_UI8:
    case VT_INT: case VT_UINT: case VT_R4: case VT_R8: case VT_CY: case VT_DECIMAL:
        return checkedSeconds(std::nearbyint(static_cast<long double>(toDouble(v))));
    default: raise(err::TypeMismatch);
    }
}

std::wstring twoDigits(long long n) { return (n < 10 ? L"0" : L"") + std::to_wstring(n); }

}  // namespace

std::vector<Span> wordSpans(std::wstring_view text) {
    std::vector<Span> spans;
    const size_t n = text.size();
    size_t i = 0;
    while (i < n) {
        if (!isWordCharacter(text[i])) {
            ++i;
            continue;
        }
        const size_t begin = i++;
        while (i < n) {
            if (isWordCharacter(text[i])) {
                ++i;
                continue;
            }
            const bool joined = i + 1 < n && isWordCharacter(text[i + 1]) &&
                                (joinsLetters(text[i]) ||
                                 (joinsDigits(text[i]) && isDigit(text[i - 1]) && isDigit(text[i + 1])));
            if (!joined) break;
            i += 2;
        }
        spans.push_back(Span{begin, i});
    }
    return spans;
}

std::vector<std::wstring> splitWords(std::wstring_view text) {
    std::vector<std::wstring> words;
    for (const Span& w : wordSpans(text)) words.emplace_back(text.substr(w.begin, w.end - w.begin));
    return words;
}

int32_t countWord(std::wstring_view text, std::wstring_view word, bool wholeWord, bool caseSensitive) {
    return countOf(occurrences(text, word, wholeWord, caseSensitive).size());
}

std::wstring mostRepeatedWord(std::wstring_view text, bool caseSensitive, int32_t& count) {
    struct Seen {
        size_t first;
        size_t times;
    };
    const std::vector<std::wstring> words = splitWords(text);
    std::unordered_map<std::wstring, Seen> seen;
    size_t best = 0, bestTimes = 0;
    for (size_t i = 0; i < words.size(); ++i) {
        auto [it, added] = seen.try_emplace(caseSensitive ? words[i] : folded(words[i]), Seen{i, 0});
        (void)added;
        const size_t times = ++it->second.times;
        if (times > bestTimes || (times == bestTimes && it->second.first < best)) {
            best = it->second.first;
            bestTimes = times;
        }
    }
    count = countOf(bestTimes);
    return bestTimes ? words[best] : std::wstring();
}

std::wstring findPaste(std::wstring_view text, std::wstring_view find, std::wstring_view paste, bool wholeWord,
                       bool caseSensitive, int32_t& count) {
    const std::vector<size_t> found = occurrences(text, find, wholeWord, caseSensitive);
    count = countOf(found.size());
    std::wstring out;
    size_t from = 0;
    for (size_t pos : found) {
        out.append(text.substr(from, pos - from)).append(paste);
        from = pos + find.size();
    }
    out.append(text.substr(from));
    return out;
}

bool isEnglishText(std::wstring_view text, std::wstring_view allowed) {
    if (text.empty()) return false;
    for (wchar_t c : text)
        if (!isAsciiLetterOrDigit(c) && allowed.find(c) == std::wstring_view::npos) return false;
    return true;
}

std::wstring convertDigits(std::wstring_view text, bool toEnglish) {
    std::wstring out(text);
    for (wchar_t& c : out) {
        if (!toEnglish) {
            if (c >= L'0' && c <= L'9') c = static_cast<wchar_t>(kPersianZero + (c - L'0'));
        } else if (isPersianDigit(c)) {
            c = static_cast<wchar_t>(L'0' + (c - kPersianZero));
        } else if (isArabicIndicDigit(c)) {
            c = static_cast<wchar_t>(L'0' + (c - kArabicIndicZero));
        } else if (c == kArabicDecimalSeparator) {
            c = L'.';
        } else if (c == kArabicThousandsSeparator) {
            c = L',';
        }
    }
    return out;
}

bool isLegalText(std::wstring_view text, const std::optional<std::wstring>& illegal) {
    static const std::wstring_view kFileNameIllegal = L"\\/:*?\"<>|";
    for (wchar_t c : text) {
        if (illegal ? illegal->find(c) != std::wstring::npos : (c < 32 || kFileNameIllegal.find(c) != std::wstring_view::npos))
            return false;
    }
    return true;
}

bool checkKeyCode(int16_t& keyAscii, std::wstring_view allowed, bool allowEditing) {
    const int code = keyAscii;
    if (code == 0) return true;
    wchar_t c = static_cast<wchar_t>(static_cast<uint16_t>(code));
    if (code > 0 && code < 256) {
        // As Chr reads a code: in the ANSI code page.
        const char byte = static_cast<char>(code);
        if (MultiByteToWideChar(CP_ACP, 0, &byte, 1, &c, 1) != 1) c = static_cast<wchar_t>(code);
    }
    if (allowEditing && code > 0 && code < 32) return true;
    if (allowed.find(c) != std::wstring_view::npos) return true;
    keyAscii = 0;
    return false;
}

std::wstring totalTime(const VARIANT& times, bool withSeconds) {
    long long total = 0;
    auto add = [&](const VARIANT& v) { total = checkedSeconds(static_cast<long double>(total) + secondsOf(v)); };
    if (isArray(deref(times)))
        arrays::forEachElement(times, add);
    else
        add(times);
    const unsigned long long magnitude = static_cast<unsigned long long>(total < 0 ? -total : total);
    std::wstring out = total < 0 ? L"-" : L"";
    out += std::to_wstring(magnitude / 3600) + L":" + twoDigits(static_cast<long long>(magnitude / 60 % 60));
    if (withSeconds) out += L":" + twoDigits(static_cast<long long>(magnitude % 60));
    return out;
}

}  // namespace vx::words
