// A Bessel function at two neighbouring orders: what regions hand to recurrences and Wronskians.
#pragma once
#include "service/types.hpp"

namespace nxl::bessel {

/// f(nu) = first exp(log_scale), f(nu + 1) = second exp(log_scale). The scale keeps both away from the limits of double
/// precision, whatever the function's size; the larger of the two has a modulus near 1.
struct OrderPair {
    zcomplex first, second;
    double log_scale;
};

} // namespace nxl::bessel
