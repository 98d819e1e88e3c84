// dtrsyl, ztrsyl: recursive over halves of A or B, with products of level 3 between them. Jonsson and Kagstrom, ACM
// TOMS 28 (2002), and a kernel for what is not cut any more. That goes on trust: the few equations in which a number
// leaves its room are solved once more, element by element, with all of X scaled wherever it would overflow.
#include "lapack/kernel/source/nonsymmetric/trsyl.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/common/scalars.hpp"
#include "lapack/kernel/source/nonsymmetric/reorder.hpp"
#include "lapack/kernel/source/nonsymmetric/small_sylvester.hpp"
#include "service/arguments.hpp"
#include "service/kernel_slot.hpp"
#include "service/scratch.hpp"
#include "service/slice.hpp"
#include <algorithm>

namespace nxl {
namespace {

/// The blocks on a diagonal one after the other, from either end.
template <class T> class BlockWalk {
    const Matrix<const T>& a_;
    const bool upwards_;
    i64 start_, size_ = 0;

    i64 order(i64 k) const { return order_of_block(a_, k); }

  public:
    BlockWalk(const Matrix<const T>& a, bool upwards) : a_(a), upwards_(upwards), start_(upwards ? a.rows : 0) {}
    bool next() {
        if (!upwards_) {
            start_ += size_;
            if (start_ == a_.rows) return false;
            size_ = order(start_);
            return true;
        }
        if (start_ == 0) return false;
        size_ = order_of_block_before(a_, start_);
        start_ -= size_;
        return true;
    }
    i64 start() const { return start_; }
    i64 size() const { return size_; }
    i64 end() const { return start_ + size_; }
};

template <class T> double largest_of(const Matrix<const T>& a) {
    double largest = 0.0;
    for (i64 j = 0; j < a.columns; ++j)
        if (const double size = largest_abs1(a.rows, a.at(0, j)); !(size <= largest)) largest = size;
    return largest;
}

template <class T> double largest_of_form(const Matrix<const T>& a) {
    double largest = 0.0;
    for (i64 j = 0; j < a.columns; ++j)
        if (const double size = largest_abs1(rows_of_column(a, j), a.at(0, j)); !(size <= largest)) largest = size;
    return largest;
}

/// One solution. What it has of X is to stay within `room_`, so that no sum that X goes into overflows.
template <class T> class SylvesterRun {
    const SylvesterEquation<T>& e_;
    const Matrix<T> whole_;
    const double least_, room_;
    const bool careful_;
    double scale_ = 1.0;
    bool perturbed_ = false, within_room_ = true;

    /// Where to cut a Schur form: not through a block.
    static i64 half_of(const Matrix<const T>& a) {
        const i64 half = round_down(a.rows / 2, 8);
        return continues_block(a, half) ? half + 1 : half;
    }

    void scale_by(double factor) {
        for (i64 j = 0; j < whole_.columns; ++j)
            for (i64 i = 0; i < whole_.rows; ++i) whole_(i, j) *= factor;
        scale_ *= factor;
    }

    /// Block (k, l) of X, of which C holds what is known.
    void solve_block(const SylvesterEquation<T>& e, const Matrix<T>& c, const BlockWalk<T>& k, const BlockWalk<T>& l) {
        T right[4];
        for (i64 j = 0; j < l.size(); ++j)
            for (i64 i = 0; i < k.size(); ++i) right[i + k.size() * j] = c(k.start() + i, l.start() + j);
        const auto x = solve_small_sylvester<T>(e.adjoint_a, e.adjoint_b, e.sign,
                                                e.a.block(k.start(), k.start(), k.size(), k.size()),
                                                e.b.block(l.start(), l.start(), l.size(), l.size()), right, least_);
        perturbed_ = perturbed_ || x.perturbed;
        const double largest = largest_abs1(k.size() * l.size(), x.x);
        within_room_ = within_room_ && x.scale == 1.0 && largest <= room_;
        double factor = 1.0;
        if (careful_) {
            if (largest > room_) factor = room_ / largest;
            if (x.scale * factor != 1.0) scale_by(x.scale * factor);
        }
        for (i64 j = 0; j < l.size(); ++j)
            for (i64 i = 0; i < k.size(); ++i) c(k.start() + i, l.start() + j) = x.x[i + k.size() * j] * factor;
    }

    /// The rows that are to come, less what rows of block k of X give them, in the columns of block l.
    void take_rows_off(const SylvesterEquation<T>& e, const Matrix<T>& c, const BlockWalk<T>& k,
                       const BlockWalk<T>& l) const {
        for (i64 j = l.start(); j < l.end(); ++j)
            for (i64 p = k.start(); p < k.end(); ++p) {
                const T x = c(p, j);
                if (!e.adjoint_a)
                    for (i64 i = 0; i < k.start(); ++i) c(i, j) -= e.a(i, p) * x;
                else
                    for (i64 i = k.end(); i < c.rows; ++i) c(i, j) -= conj_if<true>(e.a(p, i)) * x;
            }
    }
    /// The same of columns.
    void take_columns_off(const SylvesterEquation<T>& e, const Matrix<T>& c, const BlockWalk<T>& l) const {
        const i64 first = e.adjoint_b ? 0 : l.end(), end = e.adjoint_b ? l.start() : c.columns;
        for (i64 j = first; j < end; ++j)
            for (i64 q = l.start(); q < l.end(); ++q) {
                const T factor = e.sign * (e.adjoint_b ? conj_if<true>(e.b(j, q)) : e.b(q, j));
                for (i64 i = 0; i < c.rows; ++i) c(i, j) -= c(i, q) * factor;
            }
    }
    void solve_by_blocks(const SylvesterEquation<T>& e, const Matrix<T>& c) {
        for (BlockWalk<T> l(e.b, e.adjoint_b); l.next();) {
            for (BlockWalk<T> k(e.a, !e.adjoint_a); k.next();) {
                solve_block(e, c, k, l);
                take_rows_off(e, c, k, l);
            }
            take_columns_off(e, c, l);
        }
    }

    /// Whether the kernel takes the form for B.
    static bool has_ordinary_pairs(const Matrix<const T>& b) {
        constexpr double farthest = 64.0;
        if constexpr (!is_complex_scalar<T>)
            for (i64 k = 1; k < b.rows; ++k) {
                if (!continues_block(b, k)) continue;
                const double square = -b(k, k - 1) / b(k - 1, k);
                if (b(k, k) != b(k - 1, k - 1) || !(square < farthest && square * farthest > 1.0)) return false;
            }
        return true;
    }
    /// An adjoint in reverse is a Schur form, and X in reverse its solution.
    void solve_leaf(const SylvesterEquation<T>& e, const Matrix<T>& c) {
        constexpr i64 most = sylvester_leaf + 1;
        if (!has_ordinary_pairs(e.b)) return solve_by_blocks(e, c);
        T copies[2][most * most];
        const auto straight = [](bool adjoint, const Matrix<const T>& form, T* copy) -> Matrix<const T> {
            const Matrix<T> reversed{copy, form.rows, form.rows, most};
            if (adjoint) copy_reversed_adjoint(form, reversed);
            return adjoint ? reversed : form;
        };
        const Matrix<const T> a = straight(e.adjoint_a, e.a, copies[0]), b = straight(e.adjoint_b, e.b, copies[1]);
        const SylvesterLeafAnswer answer = slot_of<T, &KernelTable::dsylvester_leaf, &KernelTable::zsylvester_leaf>()(
            a.rows, b.rows, a.data, a.ld, b.data, b.ld, e.sign, least_,
            c.at(e.adjoint_a ? c.rows - 1 : 0, e.adjoint_b ? c.columns - 1 : 0), e.adjoint_a ? -1 : 1,
            e.adjoint_b ? -c.ld : c.ld);
        perturbed_ = perturbed_ || answer.smallest_pivot < least_;
        within_room_ = within_room_ && answer.size <= room_;
    }

    /// One half of the rows of X, or of its columns, and the other one less what that gives it. Of A the lower half
    /// comes first, of B the left one, and of an adjoint the other.
    void solve_halves(const SylvesterEquation<T>& e, const Matrix<T>& c) {
        const bool by_rows = c.rows >= c.columns, adjoint = by_rows ? e.adjoint_a : e.adjoint_b;
        const bool last_first = by_rows != adjoint;
        const Matrix<const T>& form = by_rows ? e.a : e.b;
        const i64 half = half_of(form), rest = form.rows - half;
        const Matrix<const T> between = form.block(0, half, half, rest);
        const auto equation_of = [&](const Matrix<const T>& part) {
            SylvesterEquation<T> equation = e;
            (by_rows ? equation.a : equation.b) = part;
            return equation;
        };
        const auto half_of_x = [&](bool last) {
            const i64 start = last ? half : 0, count = last ? rest : half;
            return by_rows ? c.rows_from(start, count) : c.columns_from(start, count);
        };
        const SylvesterEquation<T> of_head = equation_of(form.block(0, 0, half, half));
        const SylvesterEquation<T> of_tail = equation_of(form.from(half, half));
        const Matrix<T> known = half_of_x(last_first), other = half_of_x(!last_first);
        solve(last_first ? of_tail : of_head, known);
        if (by_rows) gemm(adjoint ? 'C' : 'N', 'N', -1.0, between, known, 1.0, other);
        else gemm('N', adjoint ? 'C' : 'N', -e.sign, known, between, 1.0, other);
        solve(last_first ? of_head : of_tail, other);
    }
    void solve(const SylvesterEquation<T>& e, const Matrix<T>& c) {
        if (!within_room_ && !careful_) return; // it will be done again
        if (careful_) solve_by_blocks(e, c);
        else if (std::max(c.rows, c.columns) <= sylvester_leaf + 1) solve_leaf(e, c);
        else solve_halves(e, c);
    }

  public:
    SylvesterRun(const SylvesterEquation<T>& e, const Matrix<T>& c, double least, double room, bool careful)
        : e_(e),
          whole_(c),
          least_(least),
          room_(room),
          careful_(careful) {}

    bool within_room() const { return within_room_; }
    typename SylvesterEquation<T>::Answer run() {
        if (const double largest = largest_of<T>(whole_); largest > room_) {
            within_room_ = false;
            if (careful_) scale_by(room_ / largest);
        }
        solve(e_, whole_);
        return {scale_, perturbed_};
    }
};

} // namespace

template <class T> auto SylvesterEquation<T>::solve(const Matrix<T>& c, T* copy) const -> Answer {
    constexpr double tiny = safe_minimum / (2.0 * unit_roundoff), huge = 1.0 / safe_minimum;
    const double size = std::max(largest_of_form(a), largest_of_form(b));
    const double least = std::max({2.0 * unit_roundoff * size, tiny * static_cast<double>(c.rows * c.columns)});
    const double terms = 8.0 * static_cast<double>(c.rows + c.columns);
    const double room = huge / terms / std::max(size, 1.0);
    for (i64 j = 0; j < c.columns; ++j) std::copy_n(c.at(0, j), c.rows, copy + j * c.rows);
    SylvesterRun<T> plain(*this, c, least, room, false);
    const Answer answer = plain.run();
    if (plain.within_room()) return answer;
    for (i64 j = 0; j < c.columns; ++j) std::copy_n(copy + j * c.rows, c.rows, c.at(0, j));
    return SylvesterRun<T>(*this, c, least, room, true).run();
}
template struct SylvesterEquation<double>;
template struct SylvesterEquation<zcomplex>;

template <class T>
void trsyl(const char& trana, const char& tranb, const i64& isgn, const i64& m, const i64& n, const T* a,
           const i64& lda, const T* b, const i64& ldb, T* c, const i64& ldc, double& scale, i64& info, int, int) {
    constexpr const char* letters = is_complex_scalar<T> ? "NC" : "NTC";
    Arguments arguments(routine<T>("TRSYL"));
    arguments.letter(1, trana, letters).letter(2, tranb, letters).expect(3, isgn == 1 || isgn == -1);
    arguments.size(4, m).size(5, n).leading(7, lda, m).leading(9, ldb, n).leading(11, ldc, m);
    if (arguments.refused(info)) return;
    scale = 1.0;
    if (m == 0 || n == 0) return;
    const Scratch<T> copy(m * n);
    if (!copy.data()) return refuse_for_memory(routine<T>("TRSYL"), info);
    const SylvesterEquation<T> equation{
        {a, m, m, lda}, {b, n, n, ldb}, trana != 'N', tranb != 'N', static_cast<double>(isgn)};
    const auto answer = equation.solve(Matrix<T>{c, m, n, ldc}, copy.data());
    scale = answer.scale;
    info = answer.perturbed ? 1 : 0;
}
template decltype(trsyl<double>) trsyl<double>;
template decltype(trsyl<zcomplex>) trsyl<zcomplex>;

} // namespace nxl
