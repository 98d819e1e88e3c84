// Cumulative sums, at any lag, and the product of all elements.
#include "primitives/vectors/kernels.hpp"
#include "primitives/vectors/lanes.hpp"

namespace nxl::NXL_TARGET {
namespace {

/// dst[i] = src[i] + dst[i - lag] from i = lag on, for a lag of K registers of W, the running sums kept in them.
/// Returns the first i not done.
template <int W, int K = 1> i64 running_sums(const double* src, double* dst, i64 count) {
    i64 i = K * W;
    if (count < i) return count;
    Vec<W> sum[K];
    for (int k = 0; k < K; ++k) sum[k] = load<W>(dst + k * W);
    for (; i + K * W <= count; i += K * W)
        for (int k = 0; k < K; ++k) store<W>(dst + i + k * W, sum[k] = load<W>(src + i + k * W) + sum[k]);
    return i;
}

/// dst[i] = src[i] + dst[i - lag] from i on, W at a time.
template <int W> i64 lagged_sums(const double* src, double* dst, i64 i, i64 count, i64 lag) {
    for (; i + 4 * W <= count; i += 4 * W)
        for (i64 k = i; k < i + 4 * W; k += W) store<W>(dst + k, load<W>(src + k) + load<W>(dst + k - lag));
    for (; i + W <= count; i += W) store<W>(dst + i, load<W>(src + i) + load<W>(dst + i - lag));
    return i;
}

/// Shorter lags are summed in registers that the lag is a multiple of: one that reads across two unfinished stores has
/// to wait for both.
constexpr i64 kFreeLag = 32;

} // namespace

/// All of it as a loop over single elements, forwards, would do it: registers are used where that cannot be told apart.
void cum_sum_delta_d(const double* src, double* dst, i64 n, i64 delta) {
    const i64 head = delta < n ? delta : n;
    const bool apart = src + head <= dst || dst + head <= src;
    if (apart) __builtin_memcpy(dst, src, static_cast<unsigned long>(head) * sizeof(double));
    else if (src != dst)
        for (i64 i = 0; i < head; ++i) dst[i] = src[i];
    i64 i = head;
    const auto fits = [&](i64 width) {
        const bool writes_ahead = src < dst && dst < src + width; // into what a later element still has to read
        return !writes_ahead && (delta == 0 || delta >= kFreeLag || delta % width == 0);
    };
    if (delta == 1) i = running_sums<1>(src, dst, n);
    else if (delta == 2 && fits(2)) i = running_sums<2>(src, dst, n);
    else if (delta == kWidth && fits(kWidth)) i = running_sums<kWidth>(src, dst, n);
    else if (delta == 2 * kWidth && fits(kWidth)) i = running_sums<kWidth, 2>(src, dst, n);
    else if (fits(kWidth)) i = lagged_sums<kWidth>(src, dst, i, n, delta);
    else if (fits(2)) i = lagged_sums<2>(src, dst, i, n, delta);
    lagged_sums<1>(src, dst, i, n, delta);
}

void cum_sum_deltac_d(const zcomplex* src, zcomplex* dst, i64 n, i64 delta) {
    cum_sum_delta_d(parts(src), parts(dst), 2 * n, 2 * delta);
}

/// Sixteen interleaved products, then their product: the same at any width. Where one of them leaves the range in which
/// rounding is relative, everything is multiplied in the order of the array instead, which may well stay inside.
double product_d(const double* src, i64 n) {
    constexpr int chains = 16, W = kWidth;
    constexpr double smallest_normal = 0x1p-1022;
    Vec<W> product[chains / W], low = splat<W>(1.0);
    for (auto& p : product) p = splat<W>(1.0);
    i64 i = 0;
    for (; i + chains <= n; i += chains)
        for (int k = 0; k < chains / W; ++k) {
            product[k] *= load<W>(src + i + k * W);
            const Vec<W> size = __builtin_elementwise_abs(product[k]);
            low = size < low ? size : low;
        }
    double total = 1.0, lowest = low[0];
    for (int lane = 1; lane < W; ++lane) lowest = low[lane] < lowest ? low[lane] : lowest;
    for (int k = 0; k < chains; ++k) {
        total *= product[k / W][k % W];
        lowest = __builtin_fabs(total) < lowest ? __builtin_fabs(total) : lowest;
    }
    const bool in_range = lowest >= smallest_normal && __builtin_fabs(total) <= 0x1.fffffffffffffp1023;
    if (!in_range) total = 1.0, i = 0;
    for (; i < n; ++i) total *= src[i];
    return total;
}

} // namespace nxl::NXL_TARGET
