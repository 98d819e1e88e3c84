#include "solvers_ds/kernel/default/pardiso/matching.hpp"
#include "solvers_ds/kernel/default/pardiso/augmenting_paths.hpp"
#include "solvers_ds/kernel/default/pardiso/smat.hpp"
#include <algorithm>
#include <cmath>
#include <limits>

namespace nxl::pardiso {
namespace {

/// The six arrays of n integers and that of the entries, then two arrays of n reals and that of the entries.
class WorkArrays {
    i32 *integers_, n_;
    double* reals_;

  public:
    WorkArrays(const MatchingWork& work, i32 n) : integers_(work.integers), n_(n), reals_(work.reals) {}

    i32* integers(i32 k) const { return integers_ + i64{k} * n_; } // 0 to 4
    i32* start() const { return integers(5); }                     // n + 1
    i32* columns() const { return integers(6) + 1; }
    double* distance() const { return reals_; }
    double* largest() const { return reals_ + n_; } // logarithms, by column
    double* cost() const { return reals_ + 2 * i64{n_}; }
};

/// Moduli that have a logarithm; what is no entry is 0.
double modulus(double value) {
    const double size = std::abs(value);
    return size > 0.0 ? std::min(size, std::numeric_limits<double>::max()) : 0.0;
}

/// The entries of A, and for each how much smaller than the largest of its column it is, as a logarithm. Returns their
/// number.
i32 take_costs(i32 n, const i32* ia, const i32* ja, const double* a, const WorkArrays& work) {
    double *largest = work.largest(), *cost = work.cost();
    std::fill_n(largest, n, 0.0);
    i32 entries = 0;
    for (i32 i = 0; i < n; ++i) {
        work.start()[i] = entries;
        for (i32 k = ia[i]; k < ia[i + 1]; ++k) {
            const double size = modulus(a[k]);
            if (size == 0.0) continue;
            largest[ja[k]] = std::max(largest[ja[k]], size);
            work.columns()[entries] = ja[k];
            cost[entries++] = size;
        }
    }
    work.start()[n] = entries;
    for (i32 j = 0; j < n; ++j) largest[j] = largest[j] > 0.0 ? std::log(largest[j]) : 0.0;
    for (i32 k = 0; k < entries; ++k) cost[k] = std::max(largest[work.columns()[k]] - std::log(cost[k]), 0.0);
    return entries;
}

/// Gives the columns without a row those that are left.
void complete(i32 n, i32* row_of, const i32* column_of) {
    for (i32 row = 0, column = 0; row < n; ++row) {
        if (column_of[row] >= 0) continue;
        while (row_of[column] >= 0) ++column;
        row_of[column] = row;
    }
}

void set_unscaled(const MatchingView& view) {
    std::fill_n(view.row_scale, view.n, 1.0);
    std::fill_n(view.column_scale, view.n, 1.0);
}

/// From logarithms to factors.
void scale_by_duals(const MatchingView& view) {
    for (i32 i = 0; i < view.n; ++i) {
        double &row = view.row_scale[i], &column = view.column_scale[i];
        if (view.symmetric) row = column = std::exp(0.5 * (row + column));
        else {
            row = std::exp(row);
            column = std::exp(column);
        }
    }
}

/// The search on all entries of the matrix, which count from 0.
i32 match(const MatchingView& view, i32& matched) {
    const auto run = [&](const i32* ia, const i32* ja, const double* a) {
        return matching_weighted(0, view.n, ia, ja, a, view.work, view.row_of_column, view.row_scale, view.column_scale,
                                 matched);
    };
    if (!view.symmetric) return run(view.ia, view.ja, view.a);
    const auto n = static_cast<u32>(view.n);
    const Smat upper = {
        .m = n, .n = n, .nnz = static_cast<u32>(view.ia[n]), .sym = 1, .ia = view.ia, .ja = view.ja, .a = view.a};
    if (!smat_has_diagonal(&upper)) return kUnsymmetricPattern;
    const OwnedSmat all(smat_copy(&upper));
    if (!all || !smat_expand_symmetric(all.get(), true, nullptr)) return kNoMemory;
    return run(all->ia, all->ja, all->a);
}

} // namespace

i32 matching_weighted(i32 mode, i32 n, const i32* ia, const i32* ja, const double* a, const MatchingWork& work,
                      i32* perm, double* dr, double* dc, i32& matched) {
    matched = 0;
    if (mode != 0) return 1;
    if (n < 1) return kEmptyGraph;
    const WorkArrays arrays(work, n);
    if (take_costs(n, ia, ja, a, arrays) == 0) return kEmptyGraph;
    i32* column_of = arrays.integers(0);
    matched = AugmentingPaths({.n = n,
                               .start = arrays.start(),
                               .column = arrays.columns(),
                               .cost = arrays.cost(),
                               .row_of = perm,
                               .column_of = column_of,
                               .u = dr,
                               .v = dc,
                               .found_from = arrays.integers(1),
                               .position = arrays.integers(2),
                               .heap = arrays.integers(3),
                               .queue = arrays.integers(4),
                               .distance = arrays.distance()})
                  .match();
    if (matched < n) {
        complete(n, perm, column_of);
        std::fill_n(dr, n, 0.0);
        std::fill_n(dc, n, 0.0);
        return kImperfectMatching;
    }
    for (i32 j = 0; j < n; ++j) dc[j] -= arrays.largest()[j];
    return 0;
}

i32 match_and_scale(const MatchingView& view, i32& matched) {
    matched = 0;
    if (view.mode != 1) return 1;
    i32 code = 0;
    {
        const ZeroBased shifted(view.n, view.ia, view.ja);
        code = match(view, matched);
    }
    if (code != 0) {
        for (i32 j = 0; j < view.n; ++j) view.row_of_column[j] = j + 1;
        set_unscaled(view);
        return code;
    }
    for (i32 j = 0; j < view.n; ++j) ++view.row_of_column[j];
    if (view.scale) scale_by_duals(view);
    else set_unscaled(view);
    return 0;
}

} // namespace nxl::pardiso
