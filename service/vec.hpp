// Vectors of doubles on the compiler's vector extension, for sources that are compiled once per target (NXL_TARGET, its
// namespace; NXL_TARGET_BITS, its register width). Everything here is inlined or local to one source, so that no code
// for a wide target can be shared with a narrower one.
#pragma once
#include "service/types.hpp"

namespace nxl::NXL_TARGET {

constexpr int kWidth = NXL_TARGET_BITS / 64; // doubles in a vector register

template <int W> using Vec [[gnu::vector_size(W * sizeof(double))]] = double;

template <int W> [[gnu::always_inline]] inline Vec<W> load(const double* p) {
    Vec<W> v;
    __builtin_memcpy(&v, p, sizeof v); // so that p needs no alignment
    return v;
}

template <int W> [[gnu::always_inline]] inline void store(double* p, Vec<W> v) { __builtin_memcpy(p, &v, sizeof v); }

template <int W> [[gnu::always_inline]] inline Vec<W> splat(double value) {
    Vec<W> v;
    for (int lane = 0; lane < W; ++lane) v[lane] = value;
    return v;
}

template <int W> [[gnu::always_inline]] inline double sum_lanes(Vec<W> v) {
    double sum = v[0];
    for (int lane = 1; lane < W; ++lane) sum += v[lane];
    return sum;
}

/// The real and imaginary parts of W/2 complex numbers, exchanged.
template <int W> [[gnu::always_inline]] inline Vec<W> swap_parts(Vec<W> v) {
    if constexpr (W == 2) return __builtin_shufflevector(v, v, 1, 0);
    else return __builtin_shufflevector(v, v, 1, 0, 3, 2);
}

/// (even, odd, even, odd, ...).
template <int W> [[gnu::always_inline]] inline Vec<W> alternate(double even, double odd) {
    Vec<W> v;
    for (int lane = 0; lane < W; ++lane) v[lane] = lane % 2 == 0 ? even : odd;
    return v;
}

/// Doubles at the parts of complex numbers: arrays of zcomplex are read and written as pairs of doubles, which the
/// language allows and which keeps the members of std::complex out of code for wide targets.
[[gnu::always_inline]] inline double* parts(zcomplex* z) { return reinterpret_cast<double*>(z); }
[[gnu::always_inline]] inline const double* parts(const zcomplex* z) { return reinterpret_cast<const double*>(z); }

} // namespace nxl::NXL_TARGET
