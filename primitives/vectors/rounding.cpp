// Remainders, and values rounded up and down to integers.
#include "primitives/vectors/kernels.hpp"
#include "primitives/vectors/lanes.hpp"
#include <immintrin.h>

namespace nxl::NXL_TARGET {
namespace {

/// Truncated to 32-bit integers as the processor does it: what does not fit, and NaN, gives -2^31. The intrinsics say
/// so; the language leaves such a conversion undefined.
template <class V> [[gnu::always_inline]] inline V truncated(V x) {
    if constexpr (kLanes<V> == 4) return _mm256_cvtepi32_pd(_mm256_cvttpd_epi32(x));
    else if constexpr (kLanes<V> == 2) return _mm_cvtepi32_pd(_mm_cvttpd_epi32(x));
    else return V{truncated(splat<2>(x[0]))[0]};
}

/// To the next integer below (Up: above). Without an instruction for it: adding 2^52 to a smaller magnitude rounds it
/// to an integer beside x, which is then corrected; the result has the sign of x, zeros included. Larger ones are
/// integers.
template <bool Up, class V> [[gnu::always_inline]] inline V rounded(V x) {
    if constexpr (kWidth > 2) {
        if constexpr (Up) return __builtin_elementwise_ceil(x);
        else return __builtin_elementwise_floor(x);
    } else {
        const V zero{}, one = zero + 1.0, limit = zero + 0x1p52;
        const V magnitude = __builtin_elementwise_abs(x);
        const V beside = __builtin_elementwise_copysign(magnitude + limit - limit, x);
        const V next = Up ? (beside < x ? beside + one : beside) : (beside > x ? beside - one : beside);
        return magnitude < limit ? __builtin_elementwise_copysign(next, x) : x + zero; // the sum quiets a NaN
    }
}

} // namespace

void rem_d(const double* x, const double* y, double* dst, i64 n) {
    each<1>(dst, n, [](auto a, auto b) { return a - b * truncated(a / b); }, Doubles{x}, Doubles{y});
}

void rem_val_d(const double* x, double value, double* dst, i64 n) {
    const double reciprocal = 1.0 / value;
    each<1>(
        dst, n, [](auto a, auto v, auto r) { return a - truncated(a * r) * v; }, Doubles{x}, Constant{value, value},
        Constant{reciprocal, reciprocal});
}

void ceil_d(const double* src, double* dst, i64 n) {
    each<1>(dst, n, [](auto x) { return rounded<true>(x); }, Doubles{src});
}

void floor_d(const double* src, double* dst, i64 n) {
    each<1>(dst, n, [](auto x) { return rounded<false>(x); }, Doubles{src});
}

} // namespace nxl::NXL_TARGET
