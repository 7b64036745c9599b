#pragma once
// The Persian texts of the calendar and the amount in words, as the tests expect them:
// explicit code points (YEH is U+064A, never U+06CC; "one" is written with KAF U+0643;
// the weekday names write KEHEH U+06A9), keyed as in tests/host/data/persian.txt.
#include <map>
#include <string>

namespace vxtest {

inline const std::map<std::wstring, std::wstring>& persianTexts() {
    static const std::map<std::wstring, std::wstring> texts = {
        {L"calendar.weekday1", L" \u064A\u06A9 \u0634\u0646\u0628\u0647 "},
        {L"calendar.weekday2", L" \u062F\u0648 \u0634\u0646\u0628\u0647 "},
        {L"calendar.weekday3", L" \u0633\u0647 \u0634\u0646\u0628\u0647 "},
        {L"calendar.weekday4", L" \u0686\u0647\u0627\u0631 \u0634\u0646\u0628\u0647 "},
        {L"calendar.weekday5", L" \u067E\u0646\u062C \u0634\u0646\u0628\u0647 "},
        {L"calendar.weekday6", L" \u062C\u0645\u0639\u0647 "},
        {L"calendar.weekday7", L" \u0634\u0646\u0628\u0647 "},
        {L"calendar.month1", L" \u0641\u0631\u0648\u0631\u062F\u064A\u0646 "},
        {L"calendar.month2", L" \u0627\u0631\u062F\u064A\u0628\u0647\u0634\u062A "},
        {L"calendar.month3", L" \u062E\u0631\u062F\u0627\u062F "},
        {L"calendar.month4", L" \u062A\u064A\u0631 "},
        {L"calendar.month5", L" \u0645\u0631\u062F\u0627\u062F "},
        {L"calendar.month6", L" \u0634\u0647\u0631\u064A\u0648\u0631 "},
        {L"calendar.month7", L" \u0645\u0647\u0631 "},
        {L"calendar.month8", L" \u0622\u0628\u0627\u0646 "},
        {L"calendar.month9", L" \u0622\u0630\u0631 "},
        {L"calendar.month10", L" \u062F\u064A "},
        {L"calendar.month11", L" \u0628\u0647\u0645\u0646 "},
        {L"calendar.month12", L" \u0627\u0633\u0641\u0646\u062F "},
        {L"money.ones1", L"\u064A\u0643"},
        {L"money.ones2", L"\u062F\u0648"},
        {L"money.ones3", L"\u0633\u0647"},
        {L"money.ones4", L"\u0686\u0647\u0627\u0631"},
        {L"money.ones5", L"\u067E\u0646\u062C"},
        {L"money.ones6", L"\u0634\u0634"},
        {L"money.ones7", L"\u0647\u0641\u062A"},
        {L"money.ones8", L"\u0647\u0634\u062A"},
        {L"money.ones9", L"\u0646\u0647"},
        {L"money.ones10", L"\u062F\u0647"},
        {L"money.ones11", L"\u064A\u0627\u0632\u062F\u0647"},
        {L"money.ones12", L"\u062F\u0648\u0627\u0632\u062F\u0647"},
        {L"money.ones13", L"\u0633\u064A\u0632\u062F\u0647"},
        {L"money.ones14", L"\u0686\u0647\u0627\u0631\u062F\u0647"},
        {L"money.ones15", L"\u067E\u0627\u0646\u0632\u062F\u0647"},
        {L"money.ones16", L"\u0634\u0627\u0646\u0632\u062F\u0647"},
        {L"money.ones17", L"\u0647\u0641\u062F\u0647"},
        {L"money.ones18", L"\u0647\u064A\u062C\u062F\u0647"},
        {L"money.ones19", L"\u0646\u0648\u0632\u062F\u0647"},
        {L"money.tens1", L"\u062F\u0647"},
        {L"money.tens2", L"\u0628\u064A\u0633\u062A "},
        {L"money.tens3", L"\u0633\u064A "},
        {L"money.tens4", L"\u0686\u0647\u0644 "},
        {L"money.tens5", L" \u067E\u0646\u062C\u0627\u0647"},
        {L"money.tens6", L"\u0634\u0635\u062A "},
        {L"money.tens7", L"\u0647\u0641\u062A\u0627\u062F"},
        {L"money.tens8", L"\u0647\u0634\u062A\u0627\u062F"},
        {L"money.tens9", L"\u0646\u0648\u062F"},
        {L"money.hundreds1", L"\u064A\u0643\u0635\u062F"},
        {L"money.hundreds2", L"\u062F\u0648\u064A\u0633\u062A"},
        {L"money.hundreds3", L"\u0633\u064A\u0635\u062F"},
        {L"money.hundreds4", L"\u0686\u0647\u0627\u0631\u0635\u062F"},
        {L"money.hundreds5", L"\u067E\u0627\u0646\u0635\u062F"},
        {L"money.hundreds6", L"\u0634\u0634\u0635\u062F"},
        {L"money.hundreds7", L"\u0647\u0641\u062A\u0635\u062F"},
        {L"money.hundreds8", L"\u0647\u0634\u062A\u0635\u062F"},
        {L"money.hundreds9", L"\u0646\u0647\u0635\u062F"},
        {L"money.and", L" \u0648 "},
        {L"money.thousand", L" \u0647\u0632\u0627\u0631"},
        {L"money.million", L" \u0645\u064A\u0644\u064A\u0648\u0646 "},
        {L"money.milliard", L" \u0645\u064A\u0644\u064A\u0627\u0631\u062F "},
        {L"money.zero", L"\u0635\u0641\u0631"},
        {L"money.outofrange", L"\u0639\u062F\u062F \u0648\u0627\u0631\u062F \u0634\u062F\u0647 \u062E\u0627\u0631\u062C \u0627\u0632 \u0645\u062D\u062F\u0648\u062F\u0647 \u0645\u064A \u0628\u0627\u0634\u062F "},
        {L"money.say21", L"\u0628\u064A\u0633\u062A  \u0648 \u064A\u0643"},
        {L"money.say105", L"\u064A\u0643\u0635\u062F \u0648 \u067E\u0646\u062C"},
        {L"money.say2500", L"\u062F\u0648 \u0647\u0632\u0627\u0631 \u0648 \u067E\u0627\u0646\u0635\u062F"},
        {L"money.say1000000", L"\u064A\u0643 \u0645\u064A\u0644\u064A\u0648\u0646 "},
        {L"money.say2500000", L"\u062F\u0648 \u0645\u064A\u0644\u064A\u0648\u0646  \u0648 \u067E\u0627\u0646\u0635\u062F \u0647\u0632\u0627\u0631"},
        {L"money.say1000000000", L"\u064A\u0643 \u0645\u064A\u0644\u064A\u0627\u0631\u062F "},
        {L"calendar.thursday13850512", L" \u067E\u0646\u062C \u0634\u0646\u0628\u0647 12 \u0645\u0631\u062F\u0627\u062F 1385 "},
    };
    return texts;
}

// The text under key; fails the test when there is none.
inline std::wstring fa(const std::wstring& key) {
    auto it = persianTexts().find(key);
    return it == persianTexts().end() ? L"<no text " + key + L">" : it->second;
}

}  // namespace vxtest
