// The tree of divide and conquer: parts that do not split are halved down to small ones, which QL solves, and merged.
#include "lapack/kernel/source/eigen/stedc.hpp"
#include "lapack/kernel/source/eigen/pair_order.hpp"
#include "lapack/kernel/source/eigen/rank_one_merge.hpp"
#include "lapack/kernel/source/eigen/steqr.hpp"
#include "lapack/kernel/source/eigen/tridiagonal_blocks.hpp"
#include "service/parallel.hpp"
#include "service/scratch.hpp"
#include "service/threads.hpp"

namespace nxl {
namespace {

constexpr i64 no_memory = -1000, largest_leaf = 25;

/// Rows of a matrix of order n, halved `depth` times.
struct Halves {
    i64 n, depth = 0;

    explicit Halves(i64 order) : n(order) {
        while ((n >> depth) >= largest_leaf) ++depth;
    }
    /// Part `index` of the 2^level ones.
    Slice part(i64 level, i64 index) const {
        Slice rows{0, n};
        for (i64 bit = level - 1; bit >= 0; --bit) {
            const i64 half = rows.count / 2;
            rows = (index >> bit & 1) == 0 ? Slice{rows.start, half} : Slice{rows.start + half, rows.count - half};
        }
        return rows;
    }
    /// body(index, part) for all parts of a level, on several threads where there are enough of them.
    template <class Body> void each(i64 level, const Body& body) const {
        constexpr i64 least = 64; // rows that are worth a thread
        const i64 parts = i64{1} << level;
        const i64 team = region_would_be_serial() ? 1 : std::min({i64{max_threads(domain_all)}, parts, n / least});
        if (team < 2)
            for (i64 k = 0; k < parts; ++k) body(k, part(level, k));
        else parallel_blocks(static_cast<int>(team), static_cast<int>(parts), [&](int k) { body(k, part(level, k)); });
    }
};

/// One part that does not split, of a norm not far from 1; q, which is zero, becomes its vectors.
class Tree {
    const Matrix<double> q_;
    double *const d_, *const e_;
    i64* const order_;
    const MergeSpace& space_;
    const Halves halves_;

    bool solve_leaf(const Slice& rows) const {
        const Matrix<double> q = q_.block(rows.start, rows.start, rows.count, rows.count);
        i64 info = 0;
        std::iota(order_ + rows.start, order_ + rows.end(), i64{0});
        steqr('I', rows.count, d_ + rows.start, e_ + rows.start, q.data, q.ld, nullptr, info, 1);
        return info == 0;
    }

  public:
    Tree(const Matrix<double>& q, double* d, double* e, i64* order, const MergeSpace& space)
        : q_(q),
          d_(d),
          e_(e),
          order_(order),
          space_(space),
          halves_(q.rows) {}

    bool solve() const {
        const i64 leaves = i64{1} << halves_.depth;
        for (i64 leaf = 1; leaf < leaves; ++leaf) {
            const i64 cut = halves_.part(halves_.depth, leaf).start;
            d_[cut - 1] -= std::fabs(e_[cut - 1]);
            d_[cut] -= std::fabs(e_[cut - 1]);
        }
        halves_.each(halves_.depth, [&](i64, const Slice& rows) {
            if (!solve_leaf(rows)) order_[rows.start] = -1;
        });
        for (i64 leaf = 0; leaf < leaves; ++leaf)
            if (order_[halves_.part(halves_.depth, leaf).start] < 0) return false;
        for (i64 level = halves_.depth - 1; level >= 0; --level)
            halves_.each(level, [&](i64, const Slice& rows) {
                const i64 half = rows.count / 2;
                merge_halves(q_.block(rows.start, rows.start, rows.count, rows.count), half, e_[rows.start + half - 1],
                             d_ + rows.start, order_ + rows.start, rows.start, space_);
            });
        return true;
    }
};

/// All parts into q, which is zero but for them. Returns info.
i64 solve_parts(i64 n, double* d, double* e, const Matrix<double>& q, i64* order, const MergeSpace& space) {
    for (i64 start = 0; start < n;) {
        const Slice rows = next_block(n, d, e, start);
        start = rows.end();
        double *const diagonal = d + rows.start, *const off = e + rows.start;
        const double size = std::max(largest_abs1(rows.count, diagonal), largest_abs1(rows.count - 1, off));
        const int power = size > 0.0 ? std::ilogb(size) : 0;
        const auto scale = [&](int by) {
            for (i64 i = 0; i < rows.count; ++i) diagonal[i] = std::ldexp(diagonal[i], by);
            for (i64 i = 0; i < rows.count - 1; ++i) off[i] = std::ldexp(off[i], by);
        };
        scale(-power);
        const Matrix<double> block = q.block(rows.start, rows.start, rows.count, rows.count);
        if (!Tree(block, diagonal, off, order, space).solve()) return (rows.start + 1) * (n + 1) + rows.end();
        scale(power);
    }
    return 0;
}

} // namespace

template <class T> i64 stedc(i64 n, double* d, double* e, const Matrix<T>& z) {
    if (n <= largest_leaf || !std::isfinite(largest_abs1(n, d)) || !std::isfinite(largest_abs1(n - 1, e))) {
        i64 failed = 0;
        steqr('I', n, d, e, z.data, z.ld, nullptr, failed, 1);
        return failed > 0 ? n + 1 + n : failed;
    }
    constexpr bool in_place = !is_complex_scalar<T>;
    const Scratch<double> squares(2 * n * n), own(in_place ? 1 : n * n), vectors(MergeSpace::vectors_of_reals * n);
    const Scratch<i64> integers((MergeSpace::vectors_of_integers + 1) * n);
    const Scratch<T> column(n);
    if (!squares.data() || !own.data() || !vectors.data() || !integers.data() || !column.data()) return no_memory;
    const MergeSpace space{n, squares.data(), squares.data() + n * n, vectors.data(), integers.data()};
    i64* const order = integers.data() + MergeSpace::vectors_of_integers * n;
    Matrix<double> q{own.data(), n, n, n};
    if constexpr (in_place) q = z;
    for (i64 j = 0; j < n; ++j) std::fill(q.at(0, j), q.at(0, j) + n, 0.0);
    if (const i64 info = solve_parts(n, d, e, q, order, space); info != 0) return info;
    for (i64 j = 0; j < n && !in_place; ++j) std::copy(q.at(0, j), q.at(0, j) + n, z.at(0, j));
    find_order(n, d, order);
    reorder_pairs(d, z, order, column.data());
    return 0;
}

template i64 stedc<double>(i64, double*, double*, const Matrix<double>&);
template i64 stedc<zcomplex>(i64, double*, double*, const Matrix<zcomplex>&);

} // namespace nxl
