// The Persian texts are compared code point by code point everywhere; these tests make
// sure the expectations themselves carry the right letters, so that a wrong one cannot
// hide on both sides of a comparison.
#include "PersianTexts.h"
#include "TestSupport.h"

#include <fstream>
#include <sstream>

using vxtest::persianTexts;

namespace {

std::wstring fromUtf8(const std::string& s) {
    if (s.empty()) return {};
    const int n = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, s.data(), static_cast<int>(s.size()), nullptr, 0);
    if (n <= 0) return L"<not UTF-8>";
    std::wstring w(static_cast<size_t>(n), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, s.data(), static_cast<int>(s.size()), &w[0], n);
    return w;
}

}  // namespace

TEST(PersianTexts, LettersAreTheArabicBlockOnesTheLibraryUses) {
    for (const auto& [key, text] : persianTexts()) {
        for (wchar_t c : text) {
            EXPECT_NE(c, L'\u06CC') << "Farsi YEH in " << key;  // the texts write ARABIC YEH U+064A
            EXPECT_TRUE(c == L' ' || (c >= L'0' && c <= L'9') || (c >= L'\u0621' && c <= L'\u06A9'))
                << std::hex << static_cast<int>(c) << " in " << key;
            // KEHEH only in the weekday name of Sunday.
            if (c == L'\u06A9') {
                EXPECT_EQ(key, L"calendar.weekday1");
            }
        }
        // ARABIC KAF only in "one" (YEH, KAF), alone or in "one hundred".
        for (size_t i = text.find(L'\u0643'); i != std::wstring::npos; i = text.find(L'\u0643', i + 1))
            EXPECT_TRUE(i > 0 && text[i - 1] == L'\u064A') << key;
    }
    EXPECT_EQ(vxtest::fa(L"calendar.weekday1"), std::wstring(L" \u064A\u06A9 \u0634\u0646\u0628\u0647 "));
    EXPECT_EQ(vxtest::fa(L"money.ones1"), std::wstring(L"\u064A\u0643"));
}

TEST(PersianTexts, TheHostTestsDataFileHoldsTheSameTexts) {
    std::ifstream file(VX_HOST_DATA_DIR "/persian.txt", std::ios::binary);
    ASSERT_TRUE(file) << VX_HOST_DATA_DIR "/persian.txt";
    std::stringstream content;
    content << file.rdbuf();
    std::istringstream lines(content.str());
    std::string line;
    size_t seen = 0;
    while (std::getline(lines, line)) {
        if (line.empty() || line[0] == '#') continue;
        const size_t eq = line.find('=');
        ASSERT_NE(eq, std::string::npos) << line;
        const std::wstring key = fromUtf8(line.substr(0, eq));
        std::wstring text = fromUtf8(line.substr(eq + 1));
        ASSERT_TRUE(text.size() >= 2 && text.front() == L'[' && text.back() == L']') << "keep the blanks: [ text ] for " << key;
        text = text.substr(1, text.size() - 2);
        auto expected = persianTexts().find(key);
        ASSERT_NE(expected, persianTexts().end()) << "unexpected key in persian.txt";
        EXPECT_EQ(text, expected->second) << key;
        ++seen;
    }
    EXPECT_EQ(seen, persianTexts().size());
}
