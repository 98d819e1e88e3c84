// dgeqp3, and the same for complex matrices. A block of nb steps touches of the columns that follow one row at a time;
// what is below comes by one product at its end:
//
//     A := A - V F^H,  F = A^H V T,
//
// Quintana-Orti, Sun and Bischof, SIAM J. Sci. Comput. 19 (1998). The norms of what is left of the columns are brought
// up to date from step to step, and taken anew where too many digits were lost: Drmac and Bujanovic, ACM TOMS 35
// (2008).
#include "lapack/kernel/source/orthogonal/geqp3.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/common/scalars.hpp"
#include "lapack/kernel/source/common/to_and_fro.hpp"
#include "lapack/kernel/source/orthogonal/apply_q.hpp"
#include "lapack/kernel/source/orthogonal/geqrf.hpp"
#include "lapack/kernel/source/orthogonal/reflector.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include "service/scratch.hpp"
#include "service/slice.hpp"
#include "service/workspace.hpp"
#include <algorithm>
#include <cmath>
#include <utility>

namespace nxl {
namespace {

constexpr i64 pivoted_block = 32;

/// Of each column what is left of its norm, and what was left when it was last computed.
struct ColumnNorms {
    double *left, *computed;
};

/// The steps from row and column `done` on.
template <class T> class PivotedColumns {
    const Matrix<T> a_;
    i64* const jpvt_;
    T* const tau_;
    const ColumnNorms norms_;
    const Matrix<T> f_;             // F of the block, a row for each column of A
    T *const sums_, *const vector_; // one for each step of the block; for each row of A

    void interchange(i64 k, i64 pivot, i64 step) const {
        if (k == pivot) return;
        swap(a_.rows, a_.at(0, k), 1, a_.at(0, pivot), 1);
        swap(step, f_.at(k, 0), f_.ld, f_.at(pivot, 0), f_.ld);
        std::swap(jpvt_[k], jpvt_[pivot]);
        norms_.left[pivot] = norms_.left[k];
        norms_.computed[pivot] = norms_.computed[k];
    }

    /// The row of the step, which is R's now, in the columns after it.
    void finish_row(i64 done, i64 step) const {
        const i64 k = done + step, after = k + 1, steps = step + 1;
        for (i64 i = 0; i < steps; ++i) sums_[i] = conj_if<true>(a_(k, done + i));
        // conj(row) -= F conj(v): F's rows are conjugated in V F^H.
        T* const row = a_.at(k, after);
        const i64 count = a_.columns - after;
        conjugate_row(count, row);
        gemv('N', count, steps, -1.0, f_.at(after, 0), f_.ld, sums_, 1, 1.0, row, a_.ld);
        conjugate_row(count, row);
    }
    void conjugate_row(i64 count, T* row) const {
        if constexpr (is_complex_scalar<T>)
            for (i64 j = 0; j < count; ++j) row[j * a_.ld] = std::conj(row[j * a_.ld]);
    }

    /// Brings column k up to date with the steps of the block before it.
    void bring_up(i64 done, i64 step) const {
        if (step == 0) return;
        const i64 k = done + step;
        for (i64 i = 0; i < step; ++i) sums_[i] = conj_if<true>(f_(k, i));
        gemv('N', a_.rows - k, step, -1.0, a_.at(k, done), a_.ld, sums_, 1, 1.0, a_.at(k, k), 1);
    }

    /// Column `step` of F: tau (A^H v - F (V^H v)). Rows from a multiple of eight on, in which v is zero first:
    /// products with columns that begin with a line of the cache then take whole lines.
    void extend_f(i64 done, i64 step) const {
        const i64 k = done + step, after = k + 1, first = round_down(k, 8), rows = a_.rows - first;
        const T tau = tau_[k];
        std::fill_n(vector_, k - first, T{});
        std::copy_n(a_.at(k, k), a_.rows - k, vector_ + k - first);
        T* const column = f_.at(0, step);
        product_to_and_fro('C', tau, a_.block(first, after, rows, a_.columns - after), vector_, column + after,
                           k % 2 == 0);
        std::fill(column + done, column + after, T{});
        if (step == 0) return;
        gemv('C', rows, step, -tau, a_.at(first, done), a_.ld, vector_, 1, 0.0, sums_, 1);
        gemv('N', a_.columns - done, step, 1.0, f_.at(done, 0), f_.ld, sums_, 1, 1.0, column + done, 1);
    }

    /// Takes the row of the step off the norms. True when one has lost so many digits that it is to be computed: it is
    /// marked by a negative number.
    bool downdate_norms(i64 k) const {
        const double least = std::sqrt(unit_roundoff);
        bool lost = false;
        for (i64 j = k + 1; j < a_.columns; ++j) {
            double& left = norms_.left[j];
            if (left == 0.0) continue;
            const double ratio = std::abs(a_(k, j)) / left, share = std::max((1.0 + ratio) * (1.0 - ratio), 0.0);
            const double of_computed = left / norms_.computed[j];
            if (share * of_computed * of_computed <= least) {
                left = -1.0;
                lost = true;
            } else left *= std::sqrt(share);
        }
        return lost;
    }

    void finish_block(i64 done, i64 steps) const {
        const i64 next = done + steps, rows = a_.rows - next, columns = a_.columns - next;
        if (rows > 0 && columns > 0)
            gemm('N', 'C', -1.0, a_.block(next, done, rows, steps), f_.block(next, 0, columns, steps), 1.0,
                 a_.from(next, next));
        for (i64 j = next; j < a_.columns; ++j)
            if (norms_.left[j] < 0.0) compute_norm(j, next);
    }

    void compute_norm(i64 j, i64 row) const {
        norms_.left[j] = row < a_.rows ? nrm2(a_.rows - row, a_.at(row, j), 1) : 0.0;
        norms_.computed[j] = norms_.left[j];
    }

    /// One block from `done` on; returns its steps, fewer than it might have when a norm was lost.
    i64 factor_block(i64 done) const {
        const i64 most = std::min(f_.columns, a_.steps() - done);
        bool lost = false;
        i64 step = 0;
        while (step < most && !lost) {
            const i64 k = done + step;
            interchange(k, k + iamax(a_.columns - k, norms_.left + k, 1) - 1, step);
            bring_up(done, step);
            tau_[k] = make_reflector(a_.rows - k - 1, a_(k, k), a_.at(k, k) + 1, 1);
            const T diagonal = std::exchange(a_(k, k), T(1.0));
            extend_f(done, step);
            if (k + 1 < a_.columns) finish_row(done, step);
            a_(k, k) = diagonal;
            lost = downdate_norms(k);
            ++step;
        }
        finish_block(done, step);
        return step;
    }

  public:
    PivotedColumns(const Matrix<T>& a, i64* jpvt, T* tau, const ColumnNorms& norms, const Matrix<T>& f, T* sums,
                   T* vector)
        : a_(a),
          jpvt_(jpvt),
          tau_(tau),
          norms_(norms),
          f_(f),
          sums_(sums),
          vector_(vector) {}

    void factor(i64 done) const {
        for (i64 j = done; j < a_.columns; ++j) compute_norm(j, done);
        while (done < a_.steps()) done += factor_block(done);
    }
};

/// Brings the marked columns to the front and numbers all of them. Returns how many were marked.
template <class T> i64 move_marked_first(const Matrix<T>& a, i64* jpvt) {
    i64 marked = 0;
    for (i64 j = 0; j < a.columns; ++j) {
        const bool first = jpvt[j] != 0;
        jpvt[j] = j + 1;
        if (!first) continue;
        if (j != marked) {
            swap(a.rows, a.at(0, j), 1, a.at(0, marked), 1);
            std::swap(jpvt[j], jpvt[marked]);
        }
        ++marked;
    }
    return marked;
}

} // namespace

template <class T> bool factor_qr_pivoted(const Matrix<T>& a, i64* jpvt, T* tau) {
    const i64 n = a.columns, nb = std::min(pivoted_block, std::max(a.steps(), i64{1}));
    constexpr i64 line = 8; // arrays begin with one
    const i64 rows = round_up(a.rows, line), columns = round_up(n, line);
    const Scratch<T> memory(rows + columns * nb + nb);
    const Scratch<double> norms(2 * n);
    if (!memory.data() || !norms.data()) return false;
    const i64 marked = std::min(move_marked_first(a, jpvt), a.rows);
    if (marked > 0) {
        const Matrix<T> first = a.columns_from(0, marked);
        if (!factor_qr(first, tau)) return false;
        if (!apply_reflectors('L', true, Reflectors<T>{first, Order::forward, Storage::columns}, tau,
                              a.columns_from(marked, n - marked)))
            return false;
    }
    Sections<T> sections(memory.data());
    T* const vector = sections.take(rows);
    const Matrix<T> f{sections.take(columns * nb), n, nb, columns};
    PivotedColumns<T>(a, jpvt, tau, ColumnNorms{norms.data(), norms.data() + n}, f, sections.take(nb), vector)
        .factor(marked);
    return true;
}

template <class T>
void geqp3(const i64& m, const i64& n, T* a, const i64& lda, i64* jpvt, T* tau, T* work, const i64& lwork, i64& info) {
    constexpr RoutineLetters name = routine<T>("GEQP3");
    const bool empty = std::min(m, n) <= 0;
    const i64 norms = is_complex_scalar<T> ? 0 : 2 * n; // a complex matrix has them in an array of their own
    const Workspace<T> space(work, lwork, empty ? 1 : norms + n + 1,
                             empty ? 1 : norms + (n + 1) * block_of(routine<T>("GEQRF")));
    if (Arguments(name).size(1, m).size(2, n).leading(4, lda, m).workspace(8, space).refused(info)) return;
    if (space.is_query() || empty) return;
    if (!factor_qr_pivoted(Matrix<T>{a, m, n, lda}, jpvt, tau)) refuse_for_memory(name, info);
}
template decltype(geqp3<double>) geqp3<double>;
template bool factor_qr_pivoted(const Matrix<double>&, i64*, double*);
template bool factor_qr_pivoted(const Matrix<zcomplex>&, i64*, zcomplex*);

} // namespace nxl
