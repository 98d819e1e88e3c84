// dtrsna, ztrsna. An eigenvalue is moved to the start of the form, T = [lambda c; 0 T22]; its vector is as sensitive as
// the inverse of T22 - lambda I is large, whose norm is estimated through Sylvester equations. Bai, Demmel and
// McKenney, ACM TOMS 19 (1993).
#include "lapack/kernel/source/nonsymmetric/trsna.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/condition/reciprocal_condition.hpp"
#include "lapack/kernel/source/nonsymmetric/reorder.hpp"
#include "lapack/kernel/source/nonsymmetric/standard_block.hpp"
#include "lapack/kernel/source/nonsymmetric/trevc.hpp"
#include "lapack/kernel/source/nonsymmetric/trsyl.hpp"
#include "service/arguments.hpp"
#include "service/scratch.hpp"
#include <algorithm>

namespace nxl {
namespace {

constexpr double least_separation = safe_minimum / (2.0 * unit_roundoff);

/// |y^H x| / (|x| |y|), of vectors that have `columns` columns: real and imaginary parts.
double angle(i64 n, i64, const zcomplex* y, i64, const zcomplex* x, i64) {
    return std::abs(dotc(n, y, 1, x, 1)) / nrm2(n, x, 1) / nrm2(n, y, 1);
}
double angle(i64 n, i64 columns, const double* y, i64 ldy, const double* x, i64 ldx) {
    if (columns == 1) return std::fabs(dot(n, y, 1, x, 1)) / nrm2(n, x, 1) / nrm2(n, y, 1);
    const double *const y2 = y + ldy, *const x2 = x + ldx;
    const double real = dot(n, y, 1, x, 1) + dot(n, y2, 1, x2, 1),
                 imaginary = dot(n, y, 1, x2, 1) - dot(n, y2, 1, x, 1);
    const double of_x = std::hypot(nrm2(n, x, 1), nrm2(n, x2, 1)), of_y = std::hypot(nrm2(n, y, 1), nrm2(n, y2, 1));
    return std::hypot(real, imaginary) / of_x / of_y;
}

/// 1 / |M^-1| in the 1-norm, about, for a matrix of order m of which solve(op, x) makes s op(M)^-1 x of x and answers
/// s.
template <class T, class Solve> double inverse_of_norm(i64 m, T* v, T* x, const Solve& solve) {
    const double found = reciprocal_condition(m, 1.0, false, v, x, solve);
    return std::max(found, least_separation);
}

/// The form with one eigenvalue, or a pair, at its start. `vectors`: 4 n elements.
template <class T> struct SeparationProblem {
    Matrix<const T> t;
    T* vectors;

    i64 n() const { return t.rows; }

    /// T22 - lambda I for a lambda that is a number of T.
    double of_number() const {
        const i64 m = n() - 1;
        Sections<T> sections(vectors);
        T *const v = sections.take(n()), *const x = sections.take(n()), *const copy = sections.take(n());
        return inverse_of_norm(m, v, x, [&](char op, T* b) {
            const bool adjoint = op == 'C';
            return SylvesterEquation<T>{t.from(1, 1), t.block(0, 0, 1, 1), adjoint, adjoint, -1.0}
                .solve(Matrix<T>{b, m, 1, m}, copy)
                .scale;
        });
    }
};

/// The same for a real form that begins with a pair: with the complex rotation that splits it,
///
///     M = [delta  row]      delta = conj(lambda) - lambda
///         [0      T22 - lambda I]
///
/// A vector of the complex system below is a real one of two columns: T22 X - X B = C, B = [re im; -im re].
class PairSeparation {
    const Matrix<const double> rest_;
    const i64 m_; // order of M
    zcomplex *const v_, *const x_, *const row_;
    double *const parts_, *const copy_;
    zcomplex delta_;
    double value_[4];

    /// (T22 - lambda I) x = s b, or its adjoint; answers s.
    double solve_rest(bool adjoint, zcomplex* b) const {
        const i64 m = rest_.rows;
        if (m == 0) return 1.0;
        for (i64 i = 0; i < m; ++i) {
            parts_[i] = b[i].real();
            parts_[i + m] = b[i].imag();
        }
        const SylvesterEquation<double> equation{rest_, {value_, 2, 2, 2}, adjoint, adjoint, -1.0};
        const double scale = equation.solve(Matrix<double>{parts_, m, 2, m}, copy_).scale;
        for (i64 i = 0; i < m; ++i) b[i] = {parts_[i], parts_[i + m]};
        return scale;
    }
    double solve(char op, zcomplex* b) const {
        if (op == 'N') {
            const double scale = solve_rest(false, b + 1);
            b[0] = (b[0] * scale - dot(m_ - 1, row_, 1, b + 1, 1)) / delta_;
            return scale;
        }
        b[0] /= std::conj(delta_);
        for (i64 i = 1; i < m_; ++i) b[i] -= std::conj(row_[i - 1]) * b[0];
        const double scale = solve_rest(true, b + 1);
        b[0] *= scale;
        return scale;
    }

  public:
    /// `memory`: 3 n complex numbers and 4 n doubles.
    PairSeparation(const Matrix<const double>& t, zcomplex* memory, double* doubles)
        : rest_(t.from(2, 2)),
          m_(t.rows - 1),
          v_(memory),
          x_(memory + t.rows),
          row_(memory + 2 * t.rows),
          parts_(doubles),
          copy_(doubles + 2 * t.rows) {
        Block2<zcomplex> block{t(0, 0), t(0, 1), t(1, 0), t(1, 1)};
        const PlaneTurn<zcomplex> turn = make_standard(block);
        delta_ = block.d - block.a;
        const double real = block.a.real(), imaginary = block.a.imag();
        const double value[4] = {real, -imaginary, imaginary, real};
        std::copy_n(value, 4, value_);
        for (i64 j = 2; j < t.columns; ++j) row_[j - 2] = turn.cosine * t(1, j) - std::conj(turn.sine) * t(0, j);
    }
    double find() const {
        return inverse_of_norm(m_, v_, x_, [&](char op, zcomplex* b) { return solve(op, b); });
    }
};

/// Memory for the separations of a form of order n.
template <class T> class Separations {
    const Matrix<const T>& t_;
    const Scratch<T> form_;
    const Scratch<zcomplex> vectors_;

  public:
    explicit Separations(const Matrix<const T>& t) : t_(t), form_(t.rows * t.rows), vectors_(7 * t.rows) {}
    bool has_memory() const { return form_.data() && vectors_.data(); }

    /// Of the block at row k.
    double find(i64 k) const {
        const i64 n = t_.rows;
        if (n == 1) return std::abs(t_(0, 0));
        const Matrix<T> form{form_.data(), n, n, n};
        for (i64 j = 0; j < n; ++j) {
            const i64 count = rows_of_column(t_, j);
            std::copy_n(t_.at(0, j), count, form.at(0, j));
            std::fill_n(form.at(0, j) + count, n - count, T{});
        }
        const Matrix<T> none{nullptr, 0, n, 1};
        if (move_block_up(form, none, k, 0) != 0) return least_separation;
        if constexpr (!is_complex_scalar<T>)
            if (order_of_block(form, 0) == 2)
                return PairSeparation(form, vectors_.data(), reinterpret_cast<double*>(vectors_.data() + 3 * n)).find();
        return SeparationProblem<T>{form, reinterpret_cast<T*>(vectors_.data())}.of_number();
    }
};

} // namespace

template <class T>
void trsna(const char& job, const char& howmny, const i64* select, const i64& n, const T* t, const i64& ldt,
           const T* vl, const i64& ldvl, const T* vr, const i64& ldvr, double* s, double* sep, const i64& mm, i64& m,
           const i64& ldwork, i64& info) {
    constexpr RoutineLetters name = routine<T>("TRSNA");
    const bool values = job == 'E' || job == 'B', vectors = job == 'V' || job == 'B', some = howmny == 'S';
    Arguments arguments(name);
    arguments.letter(1, job, "EVB").letter(2, howmny, "AS").size(4, n).leading(6, ldt, n);
    arguments.leading(8, ldvl, values ? n : 1).leading(10, ldvr, values ? n : 1);
    if (arguments.refused(info)) return;
    const Matrix<const T> form{t, n, n, ldt};
    m = some ? count_selected(form, select) : n;
    if (arguments.expect(13, mm >= m).leading(16, ldwork, vectors ? n : 1).refused(info) || n == 0) return;
    const Separations<T> separations(form);
    if (!separations.has_memory()) return refuse_for_memory(name, info);
    for (i64 k = 0, place = 0, size = 0; k < n; k += size) {
        size = order_of_block(form, k);
        if (some && select[k] == 0 && select[k + size - 1] == 0) continue;
        if (values) std::fill_n(s + place, size, angle(n, size, vl + place * ldvl, ldvl, vr + place * ldvr, ldvr));
        if (vectors) std::fill_n(sep + place, size, separations.find(k));
        place += size;
    }
}
template decltype(trsna<double>) trsna<double>;
template decltype(trsna<zcomplex>) trsna<zcomplex>;

} // namespace nxl
