#pragma once
// The bridge to the operating system's "A" functions: text goes to the system's ANSI
// code page before the call and comes back to UTF-16 after it. Buffers the system
// fills are allocated beforehand and cut at the first NUL.
#include <string>
#include <string_view>

namespace vx {

std::string toAnsi(std::wstring_view text);
std::wstring fromAnsi(std::string_view text);
// The text before the first NUL.
std::string_view cutAtNul(std::string_view text);
std::wstring_view cutAtNul(std::wstring_view text);

// A fill buffer for an A function: length bytes of fill, plus a terminating NUL that
// the call may also use.
class AnsiBuffer {
public:
    explicit AnsiBuffer(size_t length, char fill = '\0') : data_(length + 1, fill) { data_[length] = '\0'; }
    char* data() { return &data_[0]; }
    size_t size() const { return data_.size() - 1; }
    // What the call filled, up to the first NUL.
    std::wstring text() const { return fromAnsi(cutAtNul(std::string_view(data_.data(), size()))); }
    // The first length bytes, as the call reported them.
    std::wstring text(size_t length) const { return fromAnsi(std::string_view(data_.data(), std::min(length, size()))); }

private:
    std::string data_;
};

}  // namespace vx
