// Cholesky factorisation with the sums and roundings of the published routine, LAPACK's recursion by halves, one
// element after the other: for small matrices so near to singular that roundings decide at which minor they fail.
#pragma once
#include "blas/kernels/lapack/rounded.hpp"

namespace nxl::NXL_TARGET {
namespace { // each source has its own: shared functions would be weak symbols

/// For an upper triangle the published routine sums the products of a half before it takes them off, and divides where
/// for a lower one it multiplies by reciprocals. View: the triangle as the lower one, with read(i, j) and write(i, j,
/// value).
template <class T, bool Upper, class View> class PublishedFactor {
    const View& view_;
    i64 done_ = 0;

  public:
    explicit PublishedFactor(const View& view) : view_(view) {}

    /// Returns 0, or the order of the first minor that is not positive; the columns before it then hold L.
    i64 factor(i64 n) { return factor(0, n) ? 0 : done_ + 1; }

  private:
    bool factor(i64 first, i64 size) {
        if (size == 1) return factor_pivot(first);
        const i64 next = first + size / 2, end = first + size;
        if (!factor(first, size / 2)) return false;
        for (i64 k = first; k < next; ++k)
            for (i64 i = next; i < end; ++i) solve(first, i, k);
        for (i64 j = next; j < end; ++j)
            for (i64 i = j; i < end; ++i) update(first, next, i, j);
        return factor(next, end - next);
    }
    bool factor_pivot(i64 j) {
        const double pivot = real_part(view_.read(j, j));
        const bool positive = pivot > 0.0; // false for NaN
        view_.write(j, j, from_real<T>(positive ? __builtin_sqrt(pivot) : pivot));
        done_ += positive;
        return positive;
    }
    void solve(i64 first, i64 i, i64 k) {
        const double diagonal = real_part(view_.read(k, k));
        T x = view_.read(i, k);
        for (i64 p = first; p < k; ++p) x = less_product(x, view_.read(i, p), conj(view_.read(k, p)));
        view_.write(i, k, Upper ? x / diagonal : x * (1.0 / diagonal));
    }
    void update(i64 first, i64 next, i64 i, i64 j) {
        T x = Upper ? from_real<T>(0.0) : view_.read(i, j);
        for (i64 p = first; p < next; ++p) x = less_product(x, view_.read(i, p), conj(view_.read(j, p)));
        view_.write(i, j, Upper ? view_.read(i, j) + x : x);
    }
};

} // namespace
} // namespace nxl::NXL_TARGET
