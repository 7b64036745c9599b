#include "text/AlphaMoney.h"

#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace vx {

namespace {

// The Persian words, as explicit code points so that no editor or compiler can change a
// letter: YEH is U+064A (never U+06CC) and "one" is written with KAF U+0643. The blanks
// inside some entries belong to them.
const wchar_t* const ones[20] = {
    L"",
    L"\u064A\u0643",                          // 1
    L"\u062F\u0648",                          // 2
    L"\u0633\u0647",                          // 3
    L"\u0686\u0647\u0627\u0631",              // 4
    L"\u067E\u0646\u062C",                    // 5
    L"\u0634\u0634",                          // 6
    L"\u0647\u0641\u062A",                    // 7
    L"\u0647\u0634\u062A",                    // 8
    L"\u0646\u0647",                          // 9
    L"\u062F\u0647",                          // 10
    L"\u064A\u0627\u0632\u062F\u0647",        // 11
    L"\u062F\u0648\u0627\u0632\u062F\u0647",  // 12
    L"\u0633\u064A\u0632\u062F\u0647",        // 13
    L"\u0686\u0647\u0627\u0631\u062F\u0647",  // 14
    L"\u067E\u0627\u0646\u0632\u062F\u0647",  // 15
    L"\u0634\u0627\u0646\u0632\u062F\u0647",  // 16
    L"\u0647\u0641\u062F\u0647",              // 17
    L"\u0647\u064A\u062C\u062F\u0647",        // 18
    L"\u0646\u0648\u0632\u062F\u0647",        // 19
};

const wchar_t* const tens[10] = {
    L"",
    L"\u062F\u0647",                // 10
    L"\u0628\u064A\u0633\u062A ",   // 20, trailing blank
    L"\u0633\u064A ",               // 30, trailing blank
    L"\u0686\u0647\u0644 ",         // 40, trailing blank
    L" \u067E\u0646\u062C\u0627\u0647",  // 50, leading blank
    L"\u0634\u0635\u062A ",         // 60, trailing blank
    L"\u0647\u0641\u062A\u0627\u062F",   // 70
    L"\u0647\u0634\u062A\u0627\u062F",   // 80
    L"\u0646\u0648\u062F",          // 90
};

const wchar_t* const hundreds[10] = {
    L"",
    L"\u064A\u0643\u0635\u062F",              // 100
    L"\u062F\u0648\u064A\u0633\u062A",        // 200
    L"\u0633\u064A\u0635\u062F",              // 300
    L"\u0686\u0647\u0627\u0631\u0635\u062F",  // 400
    L"\u067E\u0627\u0646\u0635\u062F",        // 500
    L"\u0634\u0634\u0635\u062F",              // 600
    L"\u0647\u0641\u062A\u0635\u062F",        // 700
    L"\u0647\u0634\u062A\u0635\u062F",        // 800
    L"\u0646\u0647\u0635\u062F",              // 900
};

const wchar_t* const zeroWord = L"\u0635\u0641\u0631";
// "The number entered is out of range ", with its trailing blank.
const wchar_t* const outOfRangeText =
    L"\u0639\u062F\u062F \u0648\u0627\u0631\u062F \u0634\u062F\u0647 \u062E\u0627\u0631\u062C "
    L"\u0627\u0632 \u0645\u062D\u062F\u0648\u062F\u0647 \u0645\u064A \u0628\u0627\u0634\u062F ";

// Str(Val(Str(x))): the amount as decimal text with "." for the decimal point on every
// locale, up to 15 significant digits, a positive number led by one blank.
std::wstring amountText(double x) {
    wchar_t buffer[64];
    std::swprintf(buffer, 64, L"%.15G", x);
    std::wstring text = buffer;
    return x >= 0 ? L" " + text : text;
}

// A group of digits cut from the amount's text, read as a number and rounded half to
// even to a 16-bit integer; false when it is no group of 0 to 999 (which only a
// fractional amount can produce).
bool readGroup(const std::wstring& group, int& value) {
    wchar_t* end = nullptr;
    const double d = std::wcstod(group.c_str(), &end);
    while (end && *end == L' ') ++end;
    if (!end || *end != 0) return false;
    const double r = std::nearbyint(d);  // the default rounding mode: half to even
    if (!(r >= 0 && r <= 999)) return false;
    value = static_cast<int>(r);
    return true;
}

}  // namespace

AlphaMoney::AlphaMoney()
    : and_(L" \u0648 "),
      million_(L" \u0645\u064A\u0644\u064A\u0648\u0646 "),
      thousand_(L" \u0647\u0632\u0627\u0631"),  // no trailing blank, unlike the other scale words
      milliard_(L" \u0645\u064A\u0644\u064A\u0627\u0631\u062F ") {}

std::wstring AlphaMoney::threeDigitWords(int n) const {
    const int d1 = n % 10;
    const int d2 = n % 100;
    const int h = n / 100;
    if (d2 >= 20) {
        const int t = (d2 - d1) / 10;
        if (h == 0) return d1 == 0 ? std::wstring(tens[t]) : tens[t] + and_ + ones[d1];
        if (d1 == 0) return hundreds[h] + and_ + tens[t];
        return hundreds[h] + and_ + tens[t] + and_ + ones[d1];
    }
    if (h == 0) return ones[d2];
    if (d2 != 0) return hundreds[h] + and_ + ones[d2];
    return hundreds[h];
}

std::wstring AlphaMoney::convert(double amount) const {
    const std::wstring& A = and_;
    const std::wstring& T = thousand_;
    const std::wstring& M = million_;
    const std::wstring& B = milliard_;
    auto W = [this](int n) { return threeDigitWords(n); };

    if (std::isnan(amount)) return L"";
    if (amount == 0) return zeroWord;
    if (amount >= 1 && amount <= 999) return W(roundToInt16(amount));
    if (amount >= 1000 && amount <= 999999) {
        // The remainder is taken of the rounded amount, the thousands of the truncated one.
        const int r = roundToInt32(amount) % 1000;
        const int k = static_cast<int>(std::trunc(amount / 1000));
        return r == 0 ? W(k) + T : W(k) + T + A + W(r);
    }
    if (amount > 999999999999.0) return outOfRangeText;
    if (amount < 1000000 || (amount > 999999999 && amount < 1000000000)) return L"";

    // Millions and milliards: the groups are cut from the amount's text, counted from its
    // right end.
    const std::wstring s = amountText(amount);
    const size_t L = s.size();
    int u = 0, th = 0, mi = 0, bi = 0;
    if (!readGroup(s.substr(L - 3), u) || !readGroup(s.substr(L - 6, 3), th)) return L"";
    if (amount <= 999999999) {
        if (!readGroup(s.substr(0, L - 6), mi)) return L"";
        std::wstring text = W(mi) + M;
        if (th != 0) text += A + W(th) + T;
        if (u != 0) text += A + W(u);
        return text;
    }
    if (!readGroup(s.substr(L - 9, 3), mi) || !readGroup(s.substr(0, L - 9), bi)) return L"";
    // Only these four shapes are written; any other (a zero millions group under a
    // non-zero lower group, units without thousands) gives "".
    if (u == 0 && th == 0 && mi == 0) return W(bi) + B;
    if (u == 0 && th == 0) return W(bi) + B + A + W(mi) + M;
    if (u == 0 && mi != 0) return W(bi) + B + A + W(mi) + M + A + W(th) + T;
    if (th != 0 && mi != 0) return W(bi) + B + A + W(mi) + M + A + W(th) + T + A + W(u);
    return L"";
}

HRESULT AlphaMoney::ConvertAlphaMoney(double Adad, BSTR* result) {
    return deliver(result, [&] { return convert(Adad); });
}

}  // namespace vx
