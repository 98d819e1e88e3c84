// idamax, idamin, izamax, izamin: the one-based position of the first largest or smallest magnitude.
#include "blas/kernels/kernels.hpp"

namespace nxl::NXL_TARGET {
namespace {

// Keeping positions beside magnitudes in vectors costs more than the comparison. So a block of 2048 elements, 16 KiB of
// real ones, is asked for its best magnitude alone; only when that beats the best so far is the block searched, while
// it is still in the first cache. In a random vector few blocks win.
enum class Extreme { largest, smallest };

/// Elements between two looks at the position: the magnitude is found for a block first, its place only when it won.
constexpr i64 block_count = 2048;

/// |x| of a real element, |re| + |im| of a complex one.
template <int K> double magnitude(const double* x) {
    if constexpr (K == 1) return __builtin_fabs(x[0]);
    else return __builtin_fabs(x[0]) + __builtin_fabs(x[1]);
}

/// Magnitudes of W successive elements, in an order of their own.
template <int K, int W> [[gnu::always_inline]] inline Vec<W> magnitudes(const double* x) {
    if constexpr (K == 1) {
        return __builtin_elementwise_abs(load<W>(x));
    } else {
        const Vec<W> a = __builtin_elementwise_abs(load<W>(x)), b = __builtin_elementwise_abs(load<W>(x + W));
        if constexpr (W == 2) return __builtin_shufflevector(a, b, 0, 2) + __builtin_shufflevector(a, b, 1, 3);
        else if constexpr (W == 4)
            return __builtin_shufflevector(a, b, 0, 4, 2, 6) + __builtin_shufflevector(a, b, 1, 5, 3, 7);
        else
            return __builtin_shufflevector(a, b, 0, 8, 2, 10, 4, 12, 6, 14) +
                   __builtin_shufflevector(a, b, 1, 9, 3, 11, 5, 13, 7, 15);
    }
}

/// A NaN compares false and is passed over.
template <Extreme E> bool beats(double candidate, double best) {
    return E == Extreme::largest ? candidate > best : candidate < best;
}

/// The same for each lane.
template <Extreme E, int W> [[gnu::always_inline]] inline Vec<W> better(Vec<W> candidate, Vec<W> best) {
    if constexpr (E == Extreme::largest) return candidate > best ? candidate : best;
    else return candidate < best ? candidate : best;
}

/// The best magnitude among `best` and n contiguous elements.
template <Extreme E, int K, int W> double best_of_block(double best, i64 n, const double* x) {
    Vec<W> chains[4] = {splat<W>(best), splat<W>(best), splat<W>(best), splat<W>(best)};
    i64 i = 0;
    for (; i + 4 * W <= n; i += 4 * W)
        for (int k = 0; k < 4; ++k) chains[k] = better<E, W>(magnitudes<K, W>(x + (i + k * W) * K), chains[k]);
    for (; i + W <= n; i += W) chains[0] = better<E, W>(magnitudes<K, W>(x + i * K), chains[0]);
    const Vec<W> all = better<E, W>(better<E, W>(chains[0], chains[1]), better<E, W>(chains[2], chains[3]));
    for (int lane = 0; lane < W; ++lane)
        if (beats<E>(all[lane], best)) best = all[lane];
    for (; i < n; ++i)
        if (beats<E>(magnitude<K>(x + i * K), best)) best = magnitude<K>(x + i * K);
    return best;
}

/// Index of the first of contiguous elements with this magnitude; there is one. Four vectors are compared to a branch;
/// the element is then looked for one by one.
template <int K, int W> i64 find_magnitude(double wanted, i64 n, const double* x) {
    const Vec<W> target = splat<W>(wanted);
    i64 i = 0;
    for (; i + 4 * W <= n; i += 4 * W) {
        auto hit = magnitudes<K, W>(x + i * K) == target;
        for (int k = 1; k < 4; ++k) hit |= magnitudes<K, W>(x + (i + k * W) * K) == target;
        if (__builtin_reduce_or(hit) != 0) break;
    }
    while (magnitude<K>(x + i * K) != wanted) ++i;
    return i;
}

/// Blocks in ascending order, and a later one has to be better: so the first of equals wins.
template <Extreme E, int K> i64 position_unit(i64 n, const double* x) {
    double best = magnitude<K>(x);
    if (best != best) return 1; // nothing beats a NaN in first place
    i64 where = 0;
    for (i64 start = 0; start < n; start += block_count) {
        const i64 length = n - start < block_count ? n - start : block_count;
        const double found = best_of_block<E, K, kWidest>(best, length, x + start * K);
        if (!beats<E>(found, best)) continue;
        best = found;
        where = start + find_magnitude<K, kWidest>(found, length, x + start * K);
    }
    return where + 1;
}

template <Extreme E, int K> i64 position(i64 n, const double* x, i64 incx) {
    if (n < 1 || incx < 1) return 0;
    if (n == 1) return 1;
    if (incx == 1) return position_unit<E, K>(n, x);
    double best = magnitude<K>(x);
    i64 where = 0;
    for (i64 i = 1; i < n; ++i) {
        const double candidate = magnitude<K>(x + i * incx * K);
        if (!beats<E>(candidate, best)) continue;
        best = candidate;
        where = i;
    }
    return where + 1;
}

} // namespace

i64 idamax(const i64& n, const double* x, const i64& incx) { return position<Extreme::largest, 1>(n, x, incx); }
i64 idamin(const i64& n, const double* x, const i64& incx) { return position<Extreme::smallest, 1>(n, x, incx); }
i64 izamax(const i64& n, const zcomplex* x, const i64& incx) {
    return position<Extreme::largest, 2>(n, parts(x), incx);
}
i64 izamin(const i64& n, const zcomplex* x, const i64& incx) {
    return position<Extreme::smallest, 2>(n, parts(x), incx);
}

} // namespace nxl::NXL_TARGET
