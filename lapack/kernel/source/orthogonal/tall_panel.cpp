// Blocks of rows are factored in the cache, on threads of their own, and their triangles, one above the other, as a
// panel again:
//
//     A = diag(Q1, Q2, ...) (R1; R2; ...),   (R1; R2; ...) = (C1; C2; ...) R.
//
// Demmel, Grigori, Hoemmen and Langou, SIAM J. Sci. Comput. 34 (2012). The published form of the product of both is
// that of I - V T V^H with
//
//     (Q1 C1; Q2 C2; ...) - (S; 0) = V U,   S = diag(+-1),
//
// an LU factorisation without interchanges: with the sign of each element of S as it is chosen for a reflector,
// opposite to that of what it is subtracted from, no pivot is less than 1. The published R is S R. Ballard, Demmel,
// Grigori, Jacquelin, Nguyen and Solomonik, J. Parallel Distrib. Comput. 85 (2015).
#include "lapack/kernel/source/orthogonal/tall_panel.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/orthogonal/block_reflector.hpp"
#include "lapack/kernel/source/orthogonal/panel.hpp"
#include "service/parallel.hpp"
#include "service/scalars.hpp"
#include "service/scratch.hpp"
#include "service/slice.hpp"
#include "service/workspace.hpp"
#include "service/worthwhile_threads.hpp"
#include <algorithm>
#include <cmath>

namespace nxl {
namespace {

/// Blocks have several times as many rows as columns, so that the triangles are a small part of the work.
template <class T> i64 blocks_of(const Matrix<T>& a, i64 elements) {
    constexpr i64 least_height = 16, widest = 256;
    if (a.columns == 0 || a.columns > widest) return 1;
    return std::max(a.rows / std::max(elements / a.columns, least_height * a.columns), i64{1});
}

/// to := the upper triangle, and zeros below.
template <class T> void copy_triangle(const Operand<T>& from, const Matrix<T>& to) {
    for (i64 j = 0; j < to.columns; ++j) {
        std::copy_n(from.at(0, j), j + 1, to.at(0, j));
        std::fill_n(to.at(0, j) + j + 1, to.rows - j - 1, T{});
    }
}

template <class T> class TallPanel {
    const Matrix<T> a_, t_; // t: in the meantime L and U
    T* const tau_;
    const i64 elements_, count_, n_;
    const int threads_;
    const Matrix<T> triangles_;          // R1, R2, ...; then C1, C2, ...
    T *const factors_, *const products_; // n by n for each block: T of its reflectors, and workspace

    Matrix<T> rows(i64 block) const {
        const Slice own = balanced_slice(a_.rows, 8, block, count_);
        return a_.rows_from(own.start, own.count);
    }
    Matrix<T> square(T* of, i64 block) const { return {of + block * n_ * n_, n_, n_, n_}; }
    Matrix<T> top() const { return a_.rows_from(0, n_); }
    template <class Body> void for_blocks(const Body& body) const {
        if (threads_ > 1) return parallel_blocks(threads_, static_cast<int>(count_), body);
        for (i64 block = 0; block < count_; ++block) body(block);
    }

    void factor_rows(i64 block) const {
        const Matrix<T> own = rows(block);
        factor_panel(own, square(products_, block).data, square(factors_, block));
        copy_triangle(own.rows_from(0, n_), triangles_.rows_from(block * n_, n_));
    }

    /// R in its place, S still missing, and C where the triangles were. Returns how many of the first columns nothing
    /// was to be done to: the published scalars of their reflectors are 0, and their signs are kept.
    i64 factor_triangles() const {
        factor_tall_panel(triangles_, tau_, t_, elements_);
        for (i64 j = 0; j < n_; ++j) std::copy_n(triangles_.at(0, j), j + 1, a_.at(0, j));
        const Matrix<T> first = square(factors_, 0);
        i64 untouched = 0;
        while (untouched < n_ && tau_[untouched] == T{} && first(untouched, untouched) == T{}) ++untouched;
        form_block(Reflectors<T>{triangles_, Order::forward, Storage::columns}, t_, triangles_, square(products_, 0));
        return untouched;
    }

    /// X := T V1^H D, for the triangle V1 of the block's vectors.
    Matrix<T> project(i64 block, const Operand<T>& d) const {
        const Matrix<T> x = square(products_, block);
        for (i64 j = 0; j < n_; ++j) std::copy_n(d.at(0, j), n_, x.at(0, j));
        trmm('L', 'L', 'C', 'U', 1.0, rows(block).rows_from(0, n_), x);
        trmm('L', 'U', 'N', 'N', 1.0, square(factors_, block), x);
        return x;
    }

    /// to := D - V1 X. Overwrites x.
    void subtract_from_top(i64 block, const Operand<T>& d, const Matrix<T>& x, const Matrix<T>& to) const {
        trmm('L', 'L', 'N', 'U', 1.0, rows(block).rows_from(0, n_), x);
        for (i64 j = 0; j < n_; ++j)
            for (i64 i = 0; i < n_; ++i) to(i, j) = d(i, j) - x(i, j);
    }

    /// The first rows of Q less S, as L U in t. R gets its signs, tau its values.
    void split(i64 untouched) const {
        const Matrix<T> c = triangles_.rows_from(0, n_);
        subtract_from_top(0, c, project(0, c), t_);
        for (i64 j = 0; j < n_; ++j) {
            const double sign = j < untouched ? 1.0 : -std::copysign(1.0, real_part(t_(j, j)));
            tau_[j] = j < untouched ? T{} : T(1.0) - t_(j, j) * sign;
            t_(j, j) = j < untouched ? T(1.0) : t_(j, j) - sign; // there the rest of row and column is 0
            for (i64 k = j; k < n_; ++k) a_(j, k) *= sign;
            scal(n_ - j - 1, T(1.0) / t_(j, j), t_.at(j, j) + 1, 1);
            for (i64 k = j + 1; k < n_; ++k)
                for (i64 i = j + 1; i < n_; ++i) t_(i, k) -= t_(i, j) * t_(j, k);
        }
    }

    /// The block's rows of V: those of (D; 0) - (V1; V2) X with D = C U^-1. The first n rows of all are L.
    void finish_rows(i64 block) const {
        const Matrix<T> own = rows(block), d = triangles_.rows_from(block * n_, n_);
        trsm('R', 'U', 'N', 'N', 1.0, t_, d);
        const Matrix<T> x = project(block, d);
        constexpr i64 elements = (i64{1} << 14) / sizeof(T); // half of the first cache
        T strip[elements];
        const i64 height = std::max(elements / n_, i64{1});
        for (i64 i = n_; i < own.rows; i += height) {
            const Matrix<T> part = own.rows_from(i, std::min(height, own.rows - i));
            const Matrix<T> vectors{strip, part.rows, n_, part.rows};
            for (i64 j = 0; j < n_; ++j) std::copy_n(part.at(0, j), part.rows, vectors.at(0, j));
            gemm('N', 'N', -1.0, vectors, x, 0.0, part);
        }
        if (block > 0) return subtract_from_top(block, d, x, own.rows_from(0, n_));
        for (i64 j = 0; j < n_; ++j) std::copy_n(t_.at(j, j) + 1, n_ - j - 1, a_.at(j, j) + 1);
    }

    /// T := -U S V1^-H; its diagonal is tau.
    void make_block_factor() const {
        for (i64 j = 0; j < n_; ++j) {
            const double sign = std::copysign(1.0, real_part(t_(j, j))); // of U, opposite to S
            for (i64 i = 0; i < j; ++i) t_(i, j) *= sign;
            t_(j, j) = tau_[j];
            std::fill_n(t_.at(j, j) + 1, n_ - j - 1, T{});
        }
        trsm('R', 'L', 'C', 'U', 1.0, top(), t_);
    }

  public:
    /// `memory`: 3 n^2 elements for each of the blocks.
    TallPanel(const Matrix<T>& a, T* tau, const Matrix<T>& t, i64 elements, i64 count, int threads, T* memory)
        : a_(a),
          t_(t),
          tau_(tau),
          elements_(elements),
          count_(count),
          n_(a.columns),
          threads_(threads),
          triangles_{memory, count * n_, n_, count * n_},
          factors_(memory + count * n_ * n_),
          products_(factors_ + count * n_ * n_) {}

    void factor() const {
        for_blocks([this](i64 block) { factor_rows(block); });
        split(factor_triangles());
        for_blocks([this](i64 block) { finish_rows(block); });
        make_block_factor();
    }
};

} // namespace

template <class T> void factor_tall_panel(const Matrix<T>& a, T* tau, const Matrix<T>& t, i64 elements) {
    const i64 count = blocks_of(a, elements);
    if (count == 1) return factor_panel(a, tau, t);
    const Scratch<T> memory(3 * count * a.columns * a.columns);
    if (!memory.data()) return factor_panel(a, tau, t);
    const double flops = 2.0 * flops_of<T>(a.rows, a.columns, a.columns);
    const int threads = region_would_be_serial() ? 1 : threads_for_work(flops, max_threads(domain_all));
    TallPanel<T>(a, tau, t, elements, count, threads, memory.data()).factor();
}

template void factor_tall_panel(const Matrix<double>&, double*, const Matrix<double>&, i64);
template void factor_tall_panel(const Matrix<zcomplex>&, zcomplex*, const Matrix<zcomplex>&, i64);

} // namespace nxl
