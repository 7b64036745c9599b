#include "AllocationFailure.h"

#include <cstdlib>
#include <new>

namespace {
bool failing = false;
std::size_t remaining = 0;
std::size_t refusedCount = 0;
}  // namespace

void* operator new(std::size_t size) {
    if (failing) {
        if (remaining == 0) {
            ++refusedCount;
            throw std::bad_alloc();
        }
        --remaining;
    }
    if (void* p = std::malloc(size ? size : 1)) return p;
    throw std::bad_alloc();
}

void operator delete(void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }

namespace vxtest {

FailingAllocations::FailingAllocations(std::size_t allowed) noexcept {
    remaining = allowed;
    refusedCount = 0;
    failing = true;
}

FailingAllocations::~FailingAllocations() { failing = false; }

std::size_t FailingAllocations::refused() const noexcept { return refusedCount; }

}  // namespace vxtest
