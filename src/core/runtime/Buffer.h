#pragma once
// The one loop for "call, grow the buffer, call again": a system call that fills a buffer
// and reports when it is too small is made again with a larger one, a bounded number of
// times and never beyond a limit, so that a value that keeps growing, or a call that keeps
// asking for more, cannot keep the loop going.
//
//     std::wstring path(MAX_PATH, L'\0');
//     growBuffer(path, 32768, [&](std::wstring& b) {
//         const DWORD n = GetModuleFileNameW(module, &b[0], static_cast<DWORD>(b.size()));
//         if (n >= b.size()) return BufferNeed::more();
//         b.resize(n);
//         return BufferNeed::fits();
//     });
#include <algorithm>
#include <cstddef>

namespace vx {

// What one call reports of its buffer.
struct BufferNeed {
    enum What { Fits, Failed, More } what;
    size_t size;  // for More: the size the call asks for (0: just larger)

    static BufferNeed fits() noexcept { return {Fits, 0}; }
    static BufferNeed failed() noexcept { return {Failed, 0}; }
    static BufferNeed more(size_t atLeast = 0) noexcept { return {More, atLeast}; }
};

// Calls call(buffer) until it fits; on More the buffer grows to the size asked for, at
// least doubled, at most limit. True when a call fitted; false when one failed, or the
// buffer reached limit or the attempts ran out while still asking for more.
template <class Buffer, class Call>
bool growBuffer(Buffer& buffer, size_t limit, Call&& call) {
    constexpr int kAttempts = 16;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        const BufferNeed need = call(buffer);
        if (need.what == BufferNeed::Fits) return true;
        if (need.what == BufferNeed::Failed || buffer.size() >= limit) return false;
        const size_t doubled = std::max<size_t>(buffer.size() * 2, 16);
        buffer.resize(std::min(std::max(need.size, doubled), limit));
    }
    return false;
}

}  // namespace vx
