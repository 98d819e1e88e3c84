#include "solvers_ds/kernel/default/pardiso/numeric/pivots.hpp"
#include <algorithm>

namespace nxl::pardiso {
namespace {

struct Place {
    i64 row, column;
};

/// The largest entry of what is left. Columns come one after the other, in the order in which they are brought up to
/// date: each is still in the cache.
template <class T> class LargestEntry {
    double most_ = -1.0;
    Place place_;

    /// Four chains hide the latency of the comparison.
    static double largest(const T* column, i64 from, i64 to) {
        double most[4] = {};
        i64 i = from;
        for (; i + 4 <= to; i += 4)
            for (int lane = 0; lane < 4; ++lane) {
                const double size = abs1(column[i + lane]);
                most[lane] = size > most[lane] ? size : most[lane];
            }
        for (; i < to; ++i) most[0] = std::max(most[0], abs1(column[i]));
        return std::max({most[0], most[1], most[2], most[3]});
    }

  public:
    explicit LargestEntry(i64 k) : place_{k, k} {}

    void look_at(const T* column, i64 j, i64 from, i64 to) {
        const double size = largest(column, from, to);
        if (!(size >= most_)) return;
        most_ = size;
        i64 row = to - 1;
        while (row > from && abs1(column[row]) != size) --row;
        place_ = {row, j};
    }
    Place place() const { return place_; }
};

} // namespace

template <class T>
void lu_perturb(i64 m, T* a, i64 ld, i32* rowpiv, i32* colpiv, const Perturbation& perturbation, PivotCounts& counts) {
    LargestEntry<T> largest(0);
    for (i64 j = 0; j < m; ++j) largest.look_at(a + j * ld, j, 0, m);
    for (i64 k = 0; k < m; ++k) {
        const auto [row, column] = largest.place();
        rowpiv[k] = static_cast<i32>(row + 1);
        colpiv[k] = static_cast<i32>(column + 1);
        if (row != k)
            for (i64 j = 0; j < m; ++j) std::swap(a[k + j * ld], a[row + j * ld]);
        T* const pivots = a + k * ld;
        if (column != k) std::swap_ranges(pivots, pivots + m, a + column * ld);
        if (abs1(pivots[k]) <= perturbation.threshold) {
            pivots[k] = perturbation.replaced(pivots[k]);
            ++counts.perturbed;
        }
        for (i64 i = k + 1; i < m; ++i) pivots[i] /= pivots[k];
        largest = LargestEntry<T>(k + 1);
        for (i64 j = k + 1; j < m; ++j) {
            T* const target = a + j * ld;
            const T factor = target[k];
            for (i64 i = k + 1; i < m; ++i) target[i] -= pivots[i] * factor;
            largest.look_at(target, j, k + 1, m);
        }
    }
}

template void lu_perturb<double>(i64, double*, i64, i32*, i32*, const Perturbation&, PivotCounts&);
template void lu_perturb<zcomplex>(i64, zcomplex*, i64, i32*, i32*, const Perturbation&, PivotCounts&);

} // namespace nxl::pardiso
