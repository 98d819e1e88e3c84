// Row interchanges. The columns are taken a few at a time, so that what the interchanges touch stays in cache however
// many they are, and each pivot is looked at once for all of those columns.
#include "lapack/kernel/source/lu/laswp.hpp"

namespace nxl {
namespace {

/// The interchanges in the order in which they are made: rows and places in the list of pivots, from 0.
struct Interchanges {
    i64 row, row_step, steps;
    const i64* pivot;
    i64 pivot_step;

    Interchanges(i64 k1, i64 k2, const i64* ipiv, i64 incx)
        : row(incx > 0 ? k1 - 1 : k2 - 1),
          row_step(incx > 0 ? 1 : -1),
          steps(incx == 0 || k2 < k1 ? 0 : k2 - k1 + 1),
          pivot(steps == 0 ? ipiv : ipiv + k1 - 1 + (incx > 0 ? 0 : (k1 - k2) * incx)),
          pivot_step(incx) {}
};

template <int columns, class T> void interchange(T* a, i64 lda, const Interchanges& list) {
    i64 row = list.row;
    const i64* pivot = list.pivot;
    for (i64 left = list.steps; left > 0; --left, row += list.row_step, pivot += list.pivot_step) {
        const i64 other = *pivot - 1;
        if (other == row) continue;
        for (int j = 0; j < columns; ++j) {
            const T kept = a[row + j * lda];
            a[row + j * lda] = a[other + j * lda];
            a[other + j * lda] = kept;
        }
    }
}

} // namespace

template <class T>
void laswp(const i64& n, T* a, const i64& lda, const i64& k1, const i64& k2, const i64* ipiv, const i64& incx) {
    constexpr int group = 4;
    const Interchanges list(k1, k2, ipiv, incx);
    i64 j = 0;
    for (; j + group <= n; j += group) interchange<group>(a + j * lda, lda, list);
    for (; j < n; ++j) interchange<1>(a + j * lda, lda, list);
}
template decltype(laswp<double>) laswp<double>;
template decltype(laswp<zcomplex>) laswp<zcomplex>;

} // namespace nxl
