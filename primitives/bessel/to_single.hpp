// The last step of every function: from a scaled double-precision value to single precision and its range.
#pragma once
#include "primitives/bessel/limits.hpp"
#include "primitives/bessel/scaled.hpp"
#include <numbers>

namespace nxl::bessel {

/// `underflow`: the modulus is below the smallest normalised number, and the value 0. `overflow`: a part is above the
/// largest number, and there is no value. An exact 0 is neither.
struct Single {
    std::complex<float> value;
    bool underflow, overflow;
};

/// Zeros come out with a plus sign, whatever led to them.
inline Single to_single(Scaled a, bool conjugate) {
    constexpr double largest = std::numeric_limits<float>::max(), smallest = std::numeric_limits<float>::min();
    constexpr double in_one_step = 300.0; // values up to exp(345) times exp of this are doubles
    if (a.value == 0.0) return {};
    if (std::abs(a.log_scale) > in_one_step) {
        const int exponent = std::ilogb(std::max(std::abs(a.value.real()), std::abs(a.value.imag())));
        a = {a.value * std::ldexp(1.0, -exponent), a.log_scale + exponent * std::numbers::ln2};
        a.log_scale = std::clamp(a.log_scale, -in_one_step, in_one_step); // far outside of single precision either way
    }
    const zcomplex w = a.value * std::exp(a.log_scale);
    if (!(std::abs(w.real()) <= largest && std::abs(w.imag()) <= largest)) return {{}, false, true};
    if (std::hypot(w.real(), w.imag()) < smallest) return {{}, true, false};
    const auto re = static_cast<float>(w.real()), im = static_cast<float>(conjugate ? -w.imag() : w.imag());
    return {{re + 0.0F, im + 0.0F}, false, false};
}

} // namespace nxl::bessel
