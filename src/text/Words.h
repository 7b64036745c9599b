#pragma once
// Words and characters, for Ds_MyVaribleFunction: splitting a text into words and counting
// them, finding and replacing, the English-only and legal-character tests, the digits of
// Persian and English, the key-press filter and the sum of durations.
//
// A word is a run of letters, digits and combining marks of any script; a zero-width
// non-joiner or joiner, an apostrophe or a hyphen between two of them belongs to the word,
// and so do ".", ",", "/", the Arabic decimal and thousands separators between two digits.
// Everything else separates words.
#include "core/runtime/Variant.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vx::words {

struct Span {
    size_t begin, end;  // [begin, end) in the text
};
// The words of a text, in order.
std::vector<Span> wordSpans(std::wstring_view text);
std::vector<std::wstring> splitWords(std::wstring_view text);

// CountFindWord: the occurrences of word, left to right without overlaps; as a whole word,
// one must neither start nor end inside a word.
int32_t countWord(std::wstring_view text, std::wstring_view word, bool wholeWord, bool caseSensitive);
// GetReapetWord: the word that occurs most often, as first written (ties: the first), and
// how often; "" and 0 without words.
std::wstring mostRepeatedWord(std::wstring_view text, bool caseSensitive, int32_t& count);
// GoFindPaste: the text with the occurrences of find (as countWord finds them) replaced.
std::wstring findPaste(std::wstring_view text, std::wstring_view find, std::wstring_view paste, bool wholeWord,
                       bool caseSensitive, int32_t& count);

// IsENMN: not empty, and English letters and digits or characters of allowed only.
bool isEnglishText(std::wstring_view text, std::wstring_view allowed);
// GoIsENMN: Persian and Arabic-Indic digits (and the Arabic decimal and thousands
// separators) to English, or English digits to Persian.
std::wstring convertDigits(std::wstring_view text, bool toEnglish);
// IsLegalCharacter: none of the illegal characters (by default those a file name cannot hold).
bool isLegalText(std::wstring_view text, const std::optional<std::wstring>& illegal);
// CheckKeyCode: whether the key's character is allowed; a refused key becomes 0.
bool checkKeyCode(int16_t& keyAscii, std::wstring_view allowed, bool allowEditing);

// GetTotalTime: the sum of the durations one value or an array holds, as "H:MM:SS" or "H:MM".
std::wstring totalTime(const VARIANT& times, bool withSeconds);

}  // namespace vx::words
