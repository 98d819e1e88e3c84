// dasum, dzasum: the sum of the magnitudes of all parts.
#include "blas/kernels/kernels.hpp"

namespace nxl::NXL_TARGET {
namespace {

template <int W> double asum_unit(i64 count, const double* x) {
    Vec<W> sum[4] = {}; // four chains hide the latency of the add
    i64 i = 0;
    for (; i + 4 * W <= count; i += 4 * W)
        for (int chain = 0; chain < 4; ++chain) sum[chain] += __builtin_elementwise_abs(load<W>(x + i + chain * W));
    for (; i + W <= count; i += W) sum[0] += __builtin_elementwise_abs(load<W>(x + i));
    double total = sum_lanes<W>((sum[0] + sum[1]) + (sum[2] + sum[3]));
    for (; i < count; ++i) total += __builtin_fabs(x[i]);
    return total;
}

/// Elements are K doubles, and all parts count alike, so that a contiguous complex vector is a real one of twice the
/// length. An increment of 0 counts the first element n times, a negative one walks from the far end.
template <int K> double asum(i64 n, const double* x, i64 incx) {
    if (n < 1) return 0.0;
    if (incx == 1 || incx == -1) return asum_unit<kWidest>(n * K, x);
    double total = 0.0;
    const double* element = x + first_index(n, incx) * K;
    for (i64 i = 0; i < n; ++i, element += incx * K)
        for (int part = 0; part < K; ++part) total += __builtin_fabs(element[part]);
    return total;
}

} // namespace

double dasum(const i64& n, const double* x, const i64& incx) { return asum<1>(n, x, incx); }
double dzasum(const i64& n, const zcomplex* x, const i64& incx) { return asum<2>(n, parts(x), incx); }

} // namespace nxl::NXL_TARGET
