// Return codes of the Bessel and Airy functions, and the sizes of arguments that they go by.
#pragma once
#include "service/types.hpp"
#include <algorithm>
#include <limits>

namespace nxl::bessel {

enum class Code : int {
    good = 0,
    bad_input = 1,      // nothing computed
    overflow = 2,       // nothing computed
    reduced = 3,        // computed; arithmetic in single precision would have lost half of its digits or more
    too_large = 4,      // nothing computed: it would have lost all
    no_convergence = 5, // nothing computed
};

/// What the largest |z| and order come from: the spacing of single precision near 1, of which an argument's reduction
/// by multiples of pi/2 must leave something, and the integers that count the multiples.
inline constexpr double single_spacing = std::max(double{std::numeric_limits<float>::epsilon()}, 1e-18);
inline constexpr double largest_size = std::min(0.5 / single_spacing, 0.5 * std::numeric_limits<int>::max());

/// The code for `size` where `largest` is the largest allowed; from its square root on, half of the digits go.
constexpr Code code_of_size(double size, double largest) {
    if (!(size <= largest)) return Code::too_large; // NaN stops here too
    return size * size > largest ? Code::reduced : Code::good;
}

/// Whether there are results to compute.
constexpr bool computes(Code code) { return code == Code::good || code == Code::reduced; }

/// The more serious of two codes for sizes.
constexpr Code worse(Code a, Code b) { return std::max(a, b); }

} // namespace nxl::bessel
