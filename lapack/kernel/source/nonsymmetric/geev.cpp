// dgeev, zgeev: scaled into the middle of the range, balanced, brought to Hessenberg and Schur form; vectors go back
// the same road and are normalised.
#include "lapack/kernel/source/nonsymmetric/geev.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/length.hpp"
#include "lapack/kernel/source/common/norms.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/nonsymmetric/balance.hpp"
#include "lapack/kernel/source/nonsymmetric/gehrd.hpp"
#include "lapack/kernel/source/nonsymmetric/hseqr.hpp"
#include "lapack/kernel/source/nonsymmetric/standard_block.hpp"
#include "lapack/kernel/source/nonsymmetric/trevc.hpp"
#include "lapack/kernel/source/orthogonal/orgtr.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include "service/scratch.hpp"
#include <algorithm>
#include <limits>

namespace nxl {
namespace {

/// The power of two that brings a matrix to where neither squares nor their sums leave the range: mostly 1.
double factor_into_range(double largest) {
    constexpr double small = 0x1p-450, large = 0x1p450;
    if (largest == 0.0 || (largest >= small && largest <= large)) return 1.0;
    return std::ldexp(1.0, std::clamp(-std::ilogb(largest), -1000, 1000));
}

template <class T> void copy_matrix(const Operand<T>& from, const Matrix<T>& to) {
    for (i64 j = 0; j < to.columns; ++j) std::copy_n(from.at(0, j), to.rows, to.at(0, j));
}

/// Lengths of 1, and a real largest element. Columns k and k + 1 of a real matrix are one vector where w tells so.
void normalise(const Matrix<zcomplex>& v, const zcomplex*) {
    for (i64 k = 0; k < v.columns; ++k) {
        zcomplex* const x = v.at(0, k);
        scal(v.rows, 1.0 / nrm2(v.rows, x, 1), x, 1);
        zcomplex* const largest = std::max_element(x, x + v.rows, [](const zcomplex& one, const zcomplex& other) {
            return std::norm(one) < std::norm(other);
        });
        scal(v.rows, std::conj(*largest) / std::abs(*largest), x, 1);
        *largest = largest->real();
    }
}
void normalise(const Matrix<double>& v, const zcomplex* w) {
    for (i64 k = 0; k < v.columns; ++k) {
        double* const x = v.at(0, k);
        if (w[k].imag() == 0.0) {
            scal(v.rows, 1.0 / nrm2(v.rows, x, 1), x, 1);
            continue;
        }
        double* const y = v.at(0, ++k);
        const double length = length_of(nrm2(v.rows, x, 1), nrm2(v.rows, y, 1));
        scal(v.rows, 1.0 / length, x, 1);
        scal(v.rows, 1.0 / length, y, 1);
        i64 largest = 0;
        double most = 0.0; // of the squares
        for (i64 i = 0; i < v.rows; ++i)
            if (const double square = x[i] * x[i] + y[i] * y[i]; square > most) {
                most = square;
                largest = i;
            }
        turn_onto_first(x[largest], y[largest]).turn_columns(v.rows, x, v.ld);
        y[largest] = 0.0;
    }
}

/// Sides that are not wanted have views without rows.
template <class T> struct EigenCall {
    Matrix<T> a, left, right;
    zcomplex* w;

    bool wants(const Matrix<T>& v) const { return v.rows > 0; }

    /// Q of the Hessenberg form, to where the vectors of one side are wanted; that view.
    Matrix<T> form_q(i64 ilo, i64 ihi, const T* tau, T* work) const {
        const Matrix<T>& q = wants(left) ? left : right;
        if (!wants(q)) return q;
        copy_matrix<T>(a, q);
        i64 info;
        orghr(a.rows, ilo, ihi, q.data, q.ld, tau, work, a.rows, info);
        return q;
    }
    bool find_vectors(bool of_left, const Matrix<T>& v, i64 ilo, i64 ihi, const double* scale) const {
        if (!wants(v)) return true;
        if (!find_schur_vectors<T>(of_left, a, nullptr, true, v)) return false;
        i64 info;
        gebak('B', of_left ? 'L' : 'R', a.rows, ilo, ihi, scale, a.rows, v.data, v.ld, info);
        normalise(v, w);
        return true;
    }

    /// False when there was no memory.
    bool run(i64& info) const {
        const i64 n = a.rows;
        const double largest = largest_modulus<T>(a);
        if (!(largest <= std::numeric_limits<double>::max())) {
            std::fill_n(w, n, zcomplex(std::numeric_limits<double>::quiet_NaN()));
            info = n;
            return true;
        }
        const double factor = factor_into_range(largest);
        const Scratch<T> scalars(2 * n);
        const Scratch<double> scale(n);
        if (!scalars.data() || !scale.data()) return false;
        for (i64 j = 0; j < n && factor != 1.0; ++j) scal(n, factor, a.at(0, j), 1);
        i64 ilo, ihi;
        gebal('B', n, a.data, a.ld, ilo, ihi, scale.data(), info);
        if (!reduce_to_hessenberg(a, ilo - 1, ihi, scalars.data())) return false;
        const Matrix<T> q = form_q(ilo, ihi, scalars.data(), scalars.data() + n);
        info = find_schur_form(a, q, wants(q), ilo - 1, ihi, w);
        if (info == 0 && wants(left) && wants(right)) copy_matrix<T>(left, right);
        if (info == 0 &&
            !(find_vectors(false, right, ilo, ihi, scale.data()) && find_vectors(true, left, ilo, ihi, scale.data())))
            return false;
        for (i64 i = 0; i < n; ++i) w[i] /= factor;
        return true;
    }
};

/// The arguments as they come; `shift` is by how many places those behind the eigenvalues are further on than for
/// complex matrices.
template <class T> struct EigenArguments {
    char jobvl, jobvr;
    i64 n;
    T* a;
    i64 lda;
    T* vl;
    i64 ldvl;
    T* vr;
    i64 ldvr;
    T* work;
    i64 lwork;

    void run(zcomplex* w, int shift, i64& info) const {
        constexpr RoutineLetters name = routine<T>("GEEV ");
        const bool left = jobvl == 'V', right = jobvr == 'V';
        const i64 rows = is_complex_scalar<T> ? 2 : left || right ? 4 : 3;
        const i64 least = std::max(rows * n, i64{1}), best = std::max(least, n * (2 + block_of(routine<T>("GEHRD"))));
        const Workspace<T> space(work, lwork, least, best);
        Arguments arguments(name);
        arguments.letter(1, jobvl, "NV").letter(2, jobvr, "NV").size(3, n).leading(5, lda, n);
        arguments.leading(8 + shift, ldvl, left ? n : 1).leading(10 + shift, ldvr, right ? n : 1);
        if (arguments.workspace(12 + shift, space).refused(info) || space.is_query() || n == 0) return;
        const EigenCall<T> call{{a, n, n, lda}, {vl, left ? n : 0, n, ldvl}, {vr, right ? n : 0, n, ldvr}, w};
        if (!w || !call.run(info)) refuse_for_memory(name, info);
    }
};

} // namespace

void nxl_lapack_dgeev(const char& jobvl, const char& jobvr, const i64& n, double* a, const i64& lda, double* wr,
                      double* wi, double* vl, const i64& ldvl, double* vr, const i64& ldvr, double* work,
                      const i64& lwork, i64& info) {
    const EigenArguments<double> call{jobvl, jobvr, n, a, lda, vl, ldvl, vr, ldvr, work, lwork};
    find_in_parts(n, lwork, wr, wi, info, [&](zcomplex* w) { call.run(w, 1, info); });
}

void nxl_lapack_zgeev(const char& jobvl, const char& jobvr, const i64& n, zcomplex* a, const i64& lda, zcomplex* w,
                      zcomplex* vl, const i64& ldvl, zcomplex* vr, const i64& ldvr, zcomplex* work, const i64& lwork,
                      i64& info) {
    EigenArguments<zcomplex>{jobvl, jobvr, n, a, lda, vl, ldvl, vr, ldvr, work, lwork}.run(w, 0, info);
}

} // namespace nxl
