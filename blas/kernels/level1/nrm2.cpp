// dnrm2, dznrm2: the Euclidean norm over the full range of doubles.
// Squares are summed plainly, a block at a time; a block whose sum leaves the safe range goes through the scaled
// recurrence of Lawson, Hanson, Kincaid and Krogh (ACM TOMS 5, 1979), which neither overflows nor underflows.
#include "blas/kernels/kernels.hpp"

namespace nxl::NXL_TARGET {
namespace {

constexpr i64 block_count = 2048;     // elements; a block with extreme values costs one slow pass over itself
constexpr double safe_low = 0x1p-900; // above it, squares lost to underflow (below 2^-1022) do not count
constexpr double safe_high = 0x1p960; // below it, 2^31 blocks can be added
constexpr double no_magnitude_yet = 0.0;

/// The norm as scale sqrt(ssq).
struct ScaledSum {
    double scale = no_magnitude_yet;
    double ssq = 1.0;

    void add(double value) {
        if (value == 0.0) return;
        const double a = __builtin_fabs(value);
        if (a <= scale) {
            ssq += (a / scale) * (a / scale);
        } else {
            ssq = ssq * (scale / a) * (scale / a) + 1.0;
            scale = a;
        }
    }
};

/// Four chains hide the latency of the add, as in ddot.
template <int W> double sum_of_squares_unit(i64 count, const double* x) {
    Vec<W> sum[4] = {};
    i64 i = 0;
    for (; i + 4 * W <= count; i += 4 * W)
        for (int chain = 0; chain < 4; ++chain) {
            const Vec<W> v = load<W>(x + i + chain * W);
            sum[chain] += v * v;
        }
    for (; i + W <= count; i += W) sum[0] += load<W>(x + i) * load<W>(x + i);
    double total = sum_lanes<W>((sum[0] + sum[1]) + (sum[2] + sum[3]));
    for (; i < count; ++i) total += x[i] * x[i];
    return total;
}

/// Elements are K doubles, `step` elements apart.
template <int K> double sum_of_squares(i64 n, const double* x, i64 step) {
    if (step == 1) return sum_of_squares_unit<kWidest>(n * K, x);
    double total = 0.0;
    for (i64 i = 0; i < n; ++i, x += step * K)
        for (int part = 0; part < K; ++part) total += x[part] * x[part];
    return total;
}

/// A block's sum tells by itself whether its elements were in range: overflow makes it infinite or NaN, and too small a
/// sum may have lost squares. So ordinary blocks never pay for the scaling; one of zeros does.
template <int K> double nrm2(i64 n, const double* x, i64 incx) {
    const i64 step = incx < 0 ? -incx : incx;
    double safe_sum = 0.0;
    ScaledSum extremes;
    for (i64 start = 0; start < n; start += block_count) {
        const i64 length = n - start < block_count ? n - start : block_count;
        const double* block = x + start * step * K;
        const double sum = sum_of_squares<K>(length, block, step);
        if (sum > safe_low && sum < safe_high) {
            safe_sum += sum;
            continue;
        }
        for (i64 i = 0; i < length; ++i)
            for (int part = 0; part < K; ++part) extremes.add(block[i * step * K + part]);
    }
    if (extremes.scale == no_magnitude_yet) return __builtin_sqrt(safe_sum);
    extremes.add(__builtin_sqrt(safe_sum));
    return extremes.scale * __builtin_sqrt(extremes.ssq);
}

} // namespace

double dnrm2(const i64& n, const double* x, const i64& incx) {
    if (n == 1) return __builtin_fabs(x[0]);
    return nrm2<1>(n, x, incx);
}

double dznrm2(const i64& n, const zcomplex* x, const i64& incx) { return nrm2<2>(n, parts(x), incx); }

} // namespace nxl::NXL_TARGET
