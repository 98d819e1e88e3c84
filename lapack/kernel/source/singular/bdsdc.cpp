// The tree of divide and conquer: a row is taken out of the middle until the parts are small enough for QR.
#include "lapack/kernel/source/singular/bdsdc.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/scalars.hpp"
#include "lapack/kernel/source/eigen/plane_rotation.hpp"
#include "lapack/kernel/source/eigen/tridiagonal_blocks.hpp"
#include "lapack/kernel/source/singular/bidiagonal_merge.hpp"
#include "lapack/kernel/source/singular/bidiagonal_qr.hpp"
#include "lapack/kernel/source/singular/unit_columns.hpp"
#include "service/scratch.hpp"
#include "service/workspace.hpp"
#include <algorithm>
#include <cmath>
#include <numeric>

namespace nxl {
namespace {

constexpr i64 largest_leaf = 25;

class Tree {
    const Matrix<double> u_, v_; // zero but for the parts that are done
    double *const d_, *const e_;
    const BidiagonalMergeSpace& space_;

    /// A part with a column more than it has rows is one without, and a column of zeros, after a sequence of rotations.
    i64 solve_leaf(const Slice& rows, i64 more) const {
        const i64 n = rows.count, first = rows.start;
        const Matrix<double> u = u_.block(first, first, n, n), v = v_.block(first, first, n + more, n + more);
        double *const d = d_ + first, *const e = e_ + first;
        make_unit_columns(u);
        make_unit_columns(v);
        for (i64 i = 0; i < n && more != 0; ++i) {
            const PlaneRotation turn = rotation_to_first(d[i], e[i]);
            slot<&KernelTable::drot>(n + 1, v.at(0, i), 1, v.at(0, i + 1), 1, turn.cosine, turn.sine);
            d[i] = turn.length;
            if (i + 1 == n) break;
            e[i] = turn.sine * d[i + 1];
            d[i + 1] *= turn.cosine;
        }
        return bidiagonal_qr<double>(more != 0 ? 'L' : 'U', n, d, e, {v.columns_from(0, n), u, {nullptr, 0, 0, 1}});
    }

  public:
    Tree(const Matrix<double>& u, const Matrix<double>& v, double* d, double* e, const BidiagonalMergeSpace& space)
        : u_(u),
          v_(v),
          d_(d),
          e_(e),
          space_(space) {}

    /// Rows of B, which have a column more than there are rows but for those at its end.
    i64 solve(const Slice& rows) const {
        const i64 more = rows.end() < u_.rows ? 1 : 0, n = rows.count, first = rows.start;
        if (n <= largest_leaf) return solve_leaf(rows, more);
        const i64 half = n / 2, middle = first + half;
        const double alpha = d_[middle], beta = e_[middle];
        if (const i64 failed = solve({first, half}); failed != 0) return failed;
        if (const i64 failed = solve({middle + 1, n - half - 1}); failed != 0) return failed;
        merge_bidiagonals(u_.block(first, first, n, n), v_.block(first, first, n + more, n + more), half, alpha, beta,
                          d_ + first, space_);
        return 0;
    }
};

/// Columns in the order of their values; `copy`: as many elements as q has.
void reorder(const Matrix<double>& q, const i64* order, double* copy) {
    for (i64 j = 0; j < q.columns; ++j) std::copy_n(q.at(0, order[j]), q.rows, copy + j * q.rows);
    for (i64 j = 0; j < q.columns; ++j) std::copy_n(copy + j * q.rows, q.rows, q.at(0, j));
}

} // namespace

i64 divide_bidiagonal(i64 n, double* d, double* e, const Matrix<double>& u, const Matrix<double>& v) {
    make_unit_columns(u);
    make_unit_columns(v);
    if (n <= largest_leaf || !std::isfinite(largest_abs1(n, d)) || !std::isfinite(largest_abs1(n - 1, e)))
        return bidiagonal_qr<double>('U', n, d, e, {v, u, {nullptr, 0, 0, 1}});
    const i64 square = (n + 1) * (n + 1);
    const Scratch<double> memory(3 * square + (BidiagonalMergeSpace::vectors_of_reals + 1) * (n + 1));
    const Scratch<i64> integers(BidiagonalMergeSpace::vectors_of_integers * (n + 1));
    if (!memory.data() || !integers.data()) return -1;
    Sections<double> sections(memory.data());
    BidiagonalMergeSpace space{};
    for (double** part : {&space.of_left, &space.of_right, &space.factors}) *part = sections.take(square);
    space.reals = sections.take(BidiagonalMergeSpace::vectors_of_reals * (n + 1));
    space.integers = integers.data();
    double* const values = sections.take(n);
    const double size = std::max(largest_abs1(n, d), largest_abs1(n - 1, e));
    const int power = size > 0.0 ? std::ilogb(size) : 0;
    for (i64 i = 0; i < n; ++i) d[i] = std::ldexp(d[i], -power);
    for (i64 i = 0; i + 1 < n; ++i) e[i] = std::ldexp(e[i], -power);
    for (i64 j = 0; j < n; ++j) u(j, j) = v(j, j) = 0.0;
    if (const i64 failed = Tree(u, v, d, e, space).solve({0, n}); failed != 0) return failed;
    i64* const order = integers.data();
    std::iota(order, order + n, i64{0});
    std::sort(order, order + n, [d](i64 i, i64 j) { return d[i] > d[j]; });
    for (i64 j = 0; j < n; ++j) values[j] = std::ldexp(d[order[j]], power);
    std::copy_n(values, n, d);
    reorder(u, order, space.of_left);
    reorder(v, order, space.of_right);
    return 0;
}

} // namespace nxl
