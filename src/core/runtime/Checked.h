#pragma once
// A 16- or 32-bit integer whose every operation is checked as the automation runtime
// checks Integer and Long arithmetic: a result outside the type's range is an overflow
// (error 6), a division by zero error 11, and division truncates toward zero.
//
//     Checked<int32_t> days = Checked<int32_t>(years) * 365 + leap;   // error 6 beyond a Long
//     int16_t year = Checked<int16_t>(days.value()).value();          // error 6 beyond an Integer
#include "core/runtime/Errors.h"

#include <cstdint>
#include <limits>
#include <type_traits>

namespace vx {

template <class T>
class Checked {
    static_assert(std::is_same_v<T, int16_t> || std::is_same_v<T, int32_t>, "Checked: an Integer or a Long");

public:
    // Any whole number; one outside the range is error 6. (A fraction has no one meaning
    // here: round it first, with roundToInt16 or roundToInt32.)
    template <class I, class = std::enable_if_t<std::is_integral_v<I>>>
    constexpr Checked(I v) : v_(fit(v)) {}

    constexpr T value() const noexcept { return v_; }

    friend constexpr Checked operator+(Checked a, Checked b) { return Checked(wide(a) + wide(b)); }
    friend constexpr Checked operator-(Checked a, Checked b) { return Checked(wide(a) - wide(b)); }
    friend constexpr Checked operator*(Checked a, Checked b) { return Checked(wide(a) * wide(b)); }
    friend constexpr Checked operator/(Checked a, Checked b) { return Checked(wide(a) / divisor(b)); }
    friend constexpr Checked operator%(Checked a, Checked b) { return Checked(wide(a) % divisor(b)); }
    friend constexpr bool operator==(Checked a, Checked b) noexcept { return a.v_ == b.v_; }
    friend constexpr bool operator!=(Checked a, Checked b) noexcept { return a.v_ != b.v_; }
    friend constexpr bool operator<(Checked a, Checked b) noexcept { return a.v_ < b.v_; }
    friend constexpr bool operator>(Checked a, Checked b) noexcept { return a.v_ > b.v_; }
    friend constexpr bool operator<=(Checked a, Checked b) noexcept { return a.v_ <= b.v_; }
    friend constexpr bool operator>=(Checked a, Checked b) noexcept { return a.v_ >= b.v_; }

private:
    static constexpr long long wide(Checked c) noexcept { return c.v_; }
    static constexpr long long divisor(Checked c) {
        if (c.v_ == 0) raise(err::DivisionByZero);
        return c.v_;
    }
    template <class I>
    static constexpr T fit(I v) {
        if (v < I{0} ? static_cast<long long>(v) < std::numeric_limits<T>::min()
                     : static_cast<unsigned long long>(v) > static_cast<unsigned long long>(std::numeric_limits<T>::max()))
            raise(err::Overflow);
        return static_cast<T>(v);
    }
    T v_;
};

}  // namespace vx
