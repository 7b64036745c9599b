#pragma once
// A vector that keeps up to N elements inside itself and goes to the heap only beyond
// that: the dispatch layer's per-call lists (a member's arguments, their copies and
// references) fit in it, so a late-bound call allocates nothing for them. Only what the
// dispatch layer uses: sizing, appending, indexing and clearing. Elements must move
// without throwing; a growth that cannot allocate throws std::bad_alloc and leaves the
// elements as they were.
#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

namespace vx {

template <class T, std::size_t N>
class SmallVector {
    static_assert(std::is_nothrow_move_constructible<T>::value, "elements must move without throwing");

public:
    SmallVector() noexcept = default;
    explicit SmallVector(std::size_t count) { resize(count); }
    SmallVector(const SmallVector&) = delete;
    SmallVector& operator=(const SmallVector&) = delete;
    ~SmallVector() {
        clear();
        release();
    }

    std::size_t size() const noexcept { return size_; }
    bool empty() const noexcept { return size_ == 0; }
    T* data() noexcept { return data_; }
    const T* data() const noexcept { return data_; }
    T& operator[](std::size_t i) noexcept { return data_[i]; }
    const T& operator[](std::size_t i) const noexcept { return data_[i]; }
    T& back() noexcept { return data_[size_ - 1]; }
    T* begin() noexcept { return data_; }
    T* end() noexcept { return data_ + size_; }

    void reserve(std::size_t capacity) {
        if (capacity <= capacity_) return;
        T* grown = static_cast<T*>(::operator new(capacity * sizeof(T)));
        for (std::size_t i = 0; i < size_; ++i) {
            new (grown + i) T(std::move(data_[i]));
            data_[i].~T();
        }
        release();
        data_ = grown;
        capacity_ = capacity;
    }

    // count value-initialised elements (what was there before goes).
    void resize(std::size_t count) {
        clear();
        reserve(count);
        for (; size_ < count; ++size_) new (data_ + size_) T();
    }

    // count copies of value (what was there before goes).
    void assign(std::size_t count, const T& value) {
        clear();
        reserve(count);
        for (; size_ < count; ++size_) new (data_ + size_) T(value);
    }

    template <class... Args>
    T& emplace_back(Args&&... args) {
        if (size_ == capacity_) reserve(capacity_ * 2);
        new (data_ + size_) T(std::forward<Args>(args)...);
        return data_[size_++];
    }
    void push_back(T&& value) { emplace_back(std::move(value)); }
    void push_back(const T& value) { emplace_back(value); }

    void clear() noexcept {
        while (size_) data_[--size_].~T();
    }

private:
    void release() noexcept {
        if (data_ != inlineData()) ::operator delete(data_);
        data_ = inlineData();
        capacity_ = N;
    }
    T* inlineData() noexcept { return reinterpret_cast<T*>(inline_); }

    alignas(T) unsigned char inline_[N * sizeof(T)];
    T* data_ = inlineData();
    std::size_t size_ = 0;
    std::size_t capacity_ = N;
};

}  // namespace vx
