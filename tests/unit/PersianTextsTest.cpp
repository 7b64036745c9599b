// The host tests compare the Persian texts code point by code point against
// tests/host/data/persian.txt. This makes sure that file itself carries the right
// letters, so that a wrong one cannot hide on both sides of a comparison: ARABIC YEH
// U+064A (never FARSI YEH U+06CC), ARABIC KAF U+0643 only in "one" (YEH, KAF), KEHEH
// U+06A9 only in the weekday name of Sunday.
#include "TestSupport.h"

#include <fstream>
#include <map>

namespace {

std::wstring fromUtf8(const std::string& s) {
    const int n = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, s.data(), static_cast<int>(s.size()), nullptr, 0);
    std::wstring w(static_cast<size_t>(n > 0 ? n : 0), L'\0');
    if (n > 0) MultiByteToWideChar(CP_UTF8, 0, s.data(), static_cast<int>(s.size()), &w[0], n);
    return w;
}

// key -> text, the brackets that keep the blanks at the ends removed.
std::map<std::wstring, std::wstring> hostTexts() {
    std::map<std::wstring, std::wstring> texts;
    std::ifstream file(VX_HOST_DATA_DIR "/persian.txt", std::ios::binary);
    std::string line;
    while (std::getline(file, line)) {
        if (line.empty() || line[0] == '#') continue;
        const std::wstring entry = fromUtf8(line);
        const size_t eq = entry.find(L'=');
        const bool bracketed = eq != std::wstring::npos && entry.size() >= eq + 3 && entry[eq + 1] == L'[' &&
                               entry.back() == L']';
        EXPECT_TRUE(bracketed) << "not key=[text]: " << line;
        if (bracketed) texts[entry.substr(0, eq)] = entry.substr(eq + 2, entry.size() - eq - 3);
    }
    return texts;
}

}  // namespace

TEST(PersianTexts, TheHostTestsTextsUseTheLibrarysLetters) {
    const auto texts = hostTexts();
    ASSERT_EQ(texts.size(), 69u);
    for (const auto& [key, text] : texts) {
        for (wchar_t c : text) {
            EXPECT_TRUE(c == L' ' || (c >= L'0' && c <= L'9') || (c >= L'\u0621' && c <= L'\u06A9'))
                << std::hex << static_cast<int>(c) << " in " << key;
            if (c == L'\u06A9') {
                EXPECT_EQ(key, L"calendar.weekday1");
            }
        }
        for (size_t i = text.find(L'\u0643'); i != std::wstring::npos; i = text.find(L'\u0643', i + 1))
            EXPECT_TRUE(i > 0 && text[i - 1] == L'\u064A') << key;
    }
    // A few written out, blanks included.
    EXPECT_EQ(texts.at(L"calendar.weekday1"), L" \u064A\u06A9 \u0634\u0646\u0628\u0647 ");
    EXPECT_EQ(texts.at(L"money.ones1"), L"\u064A\u0643");
    EXPECT_EQ(texts.at(L"money.tens5"), L" \u067E\u0646\u062C\u0627\u0647");
    EXPECT_EQ(texts.at(L"money.thousand"), L" \u0647\u0632\u0627\u0631");
    EXPECT_EQ(texts.at(L"money.say21"), L"\u0628\u064A\u0633\u062A  \u0648 \u064A\u0643");
}
