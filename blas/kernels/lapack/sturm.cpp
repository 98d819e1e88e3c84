// dsturm: how many eigenvalues of a symmetric tridiagonal matrix do not exceed each of some numbers.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/target.hpp"

namespace nxl::NXL_TARGET {
namespace {

/// The pivots of T - x, of which those that are not positive are counted; one that nearly vanishes counts as -pivmin.
/// In this form the count never falls as x grows, whatever the roundings. Demmel, Dhillon and Ren, ETNA 3 (1995).
template <int W, int Count>
void count_pivots(i64 n, const double* d, const double* e2, double pivmin, const double* shifts, i64* counts) {
    Vec<W> x[Count], pivot[Count], below[Count];
    const Vec<W> least = splat<W>(pivmin), zero = splat<W>(0.0), one = splat<W>(1.0);
    for (int v = 0; v < Count; ++v) {
        x[v] = load<W>(shifts + v * W);
        pivot[v] = one;
        below[v] = zero;
    }
    double square = 0.0;
    for (i64 i = 0; i < n; ++i) {
        const Vec<W> diagonal = splat<W>(d[i]), off = splat<W>(square);
        for (int v = 0; v < Count; ++v) {
            const Vec<W> next = diagonal - off / pivot[v] - x[v];
            const auto vanishes = (next <= least) & (next >= -least);
            pivot[v] = vanishes ? -least : next;
            below[v] += pivot[v] <= zero ? one : zero;
        }
        square = e2[i];
    }
    for (int v = 0; v < Count; ++v)
        for (int lane = 0; lane < W; ++lane) counts[v * W + lane] = static_cast<i64>(below[v][lane]);
}

template <int W, int Count>
void count_groups(i64 n, const double* d, const double* e2, double pivmin, i64 many, i64& next, const double* shifts,
                  i64* counts) {
    for (; next + W * Count <= many; next += W * Count)
        count_pivots<W, Count>(n, d, e2, pivmin, shifts + next, counts + next);
}

} // namespace

void dsturm(const i64& n, const double* d, const double* e2, const double& pivmin, const i64& many,
            const double* shifts, i64* counts) {
    i64 next = 0;
    count_groups<kWidest, 4>(n, d, e2, pivmin, many, next, shifts, counts);
    count_groups<kWidest, 1>(n, d, e2, pivmin, many, next, shifts, counts);
    count_groups<1, 1>(n, d, e2, pivmin, many, next, shifts, counts);
}

} // namespace nxl::NXL_TARGET
