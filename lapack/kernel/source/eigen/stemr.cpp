// The parts that a matrix splits into, each with values by QL without square roots, and vectors by representations.
#include "lapack/kernel/source/eigen/stemr.hpp"
#include "lapack/kernel/source/eigen/pair_order.hpp"
#include "lapack/kernel/source/eigen/representation_tree.hpp"
#include "lapack/kernel/source/eigen/sterf.hpp"
#include "lapack/kernel/source/eigen/tridiagonal_blocks.hpp"
#include "service/scratch.hpp"
#include "service/workspace.hpp"

namespace nxl {
namespace {

/// Copies of the matrix, multiplied by 2^-power, and of its values.
struct ScaledTridiagonal {
    i64 n;
    double *d, *e, *values, *work;
    int power = 0;

    void scale(const double* from_d, const double* from_e) {
        const double size = std::max(largest_abs1(n, from_d), largest_abs1(n - 1, from_e));
        power = size > 0.0 ? std::ilogb(size) : 0;
        for (i64 i = 0; i < n; ++i) d[i] = std::ldexp(from_d[i], -power);
        for (i64 i = 0; i < n - 1; ++i) e[i] = std::ldexp(from_e[i], -power);
    }
    /// Rows from `start` to before an off-diagonal element that is negligible beside the norm, which is about 1.
    Slice part(i64 start) const {
        i64 last = start;
        while (last + 1 < n && std::fabs(e[last]) > unit_roundoff) ++last;
        return {start, last + 1 - start};
    }
    bool find_values(const Slice& rows) const {
        std::copy(d + rows.start, d + rows.end(), values + rows.start);
        std::copy(e + rows.start, e + rows.end() - 1, work);
        i64 info = 0;
        nxl_lapack_dsterf(rows.count, values + rows.start, work, info);
        return info == 0;
    }
};

} // namespace

template <class T> i64 stemr(i64 n, const double* d, const double* e, double* w, const Matrix<T>& z, i64* isuppz) {
    constexpr i64 no_memory = -1000, step = sizeof(T) / sizeof(double);
    const Scratch<double> space(4 * n);
    const Scratch<i64> integers(3 * n);
    const Scratch<T> column(n);
    if (!space.data() || !integers.data() || !column.data()) return no_memory;
    if (!std::isfinite(largest_abs1(n, d)) || !std::isfinite(largest_abs1(n - 1, e))) return 1;
    Sections<double> vectors(space.data());
    ScaledTridiagonal t{n, vectors.take(n), vectors.take(n), vectors.take(n), vectors.take(n)};
    i64 *const support = integers.data(), *const order = support + 2 * n;
    t.scale(d, e);
    for (i64 j = 0; j < n; ++j) std::fill(z.at(0, j), z.at(0, j) + n, T{});
    for (i64 start = 0; start < n;) {
        const Slice rows = t.part(start);
        start = rows.end();
        double* const place = reinterpret_cast<double*>(z.at(rows.start, rows.start));
        const PairPlaces places{w + rows.start, place, step * z.ld, step, support + 2 * rows.start, rows.start + 1};
        if (rows.count == 1) {
            places.w[0] = t.d[rows.start];
            place[0] = 1.0;
            places.support[0] = places.support[1] = places.row;
            continue;
        }
        if (!t.find_values(rows)) return 1;
        const KnownTridiagonal known{rows.count, t.d + rows.start, t.e + rows.start, t.values + rows.start};
        const TreeResult result = find_pairs_by_representations(known, places);
        if (result != TreeResult::done) return result == TreeResult::no_memory ? no_memory : 1;
    }
    for (i64 j = 0; j < n; ++j) w[j] = std::ldexp(w[j], t.power);
    find_order(n, w, order);
    for (i64 j = 0; j < n && isuppz != nullptr; ++j) std::copy_n(support + 2 * order[j], 2, isuppz + 2 * j);
    reorder_pairs(w, z, order, column.data());
    return 0;
}

template i64 stemr<double>(i64, const double*, const double*, double*, const Matrix<double>&, i64*);
template i64 stemr<zcomplex>(i64, const double*, const double*, double*, const Matrix<zcomplex>&, i64*);

} // namespace nxl
