#pragma once
// Allocations that fail on purpose: the test program replaces operator new, and while a
// FailingAllocations lives, every allocation after the first `allowed` ones throws
// std::bad_alloc (the library's code is linked into the program, so its allocations too).
#include <cstddef>

namespace vxtest {

class FailingAllocations {
public:
    explicit FailingAllocations(std::size_t allowed = 0) noexcept;
    ~FailingAllocations();
    FailingAllocations(const FailingAllocations&) = delete;
    FailingAllocations& operator=(const FailingAllocations&) = delete;
    // The allocations refused so far.
    std::size_t refused() const noexcept;
};

}  // namespace vxtest
