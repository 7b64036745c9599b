#pragma once
// Text functions with the automation runtime's semantics: positions count from 1,
// comparisons are binary (code unit by code unit) or text (ignoring case under the
// user's locale), and a negative length is an invalid procedure call (error 5).
#include <string>
#include <string_view>
#include <vector>

namespace vx {

enum class Compare { Binary, Text };

std::wstring lower(std::wstring_view s);   // LCase
std::wstring upper(std::wstring_view s);   // UCase
// The form under which keys compare without regard to case, on every locale.
std::wstring foldCase(std::wstring_view s);
bool equalText(std::wstring_view a, std::wstring_view b, Compare mode);

std::wstring_view trimView(std::wstring_view s);    // Trim: spaces at both ends
std::wstring trim(std::wstring_view s);
std::wstring ltrim(std::wstring_view s);
std::wstring rtrim(std::wstring_view s);

std::wstring left(std::wstring_view s, long length);                // error 5 when length < 0
std::wstring right(std::wstring_view s, long length);               // error 5 when length < 0
std::wstring mid(std::wstring_view s, long start, long length = -1);  // start from 1; -1 = to the end

// InStr: the 1-based position of find in s at or after start, 0 when absent; an empty
// find is found at start (when start is within s); nothing is found in empty text.
long inStr(long start, std::wstring_view s, std::wstring_view find, Compare mode = Compare::Binary);
long inStr(std::wstring_view s, std::wstring_view find, Compare mode = Compare::Binary);

// Split: the fields of s between the occurrences of delimiter. Empty text gives no
// fields; an empty delimiter gives s as the one field; limit -1 means no limit.
std::vector<std::wstring> split(std::wstring_view s, std::wstring_view delimiter, long limit = -1,
                                Compare mode = Compare::Binary);
std::wstring join(const std::vector<std::wstring>& parts, std::wstring_view delimiter);
std::wstring replace(std::wstring_view s, std::wstring_view find, std::wstring_view with,
                     Compare mode = Compare::Binary);

}  // namespace vx
