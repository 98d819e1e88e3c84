// dtrcon, ztrcon: reciprocal condition of a triangular matrix.
#include "lapack/kernel/source/condition/trcon.hpp"
#include "lapack/kernel/source/common/norms.hpp"
#include "lapack/kernel/source/condition/reciprocal_condition.hpp"
#include "lapack/kernel/source/condition/safe_solve.hpp"
#include "service/arguments.hpp"

namespace nxl {
namespace {

template <class T> struct TriangleArguments {
    char norm, uplo, diag;
    i64 n, lda;

    bool refused(i64& info) const {
        Arguments arguments(routine<T>("TRCON"));
        arguments.letter(1, norm, "1OI").letter(2, uplo, "UL").letter(3, diag, "UN");
        return arguments.size(4, n).leading(6, lda, n).refused(info);
    }
};

/// `v`, `x`, `sums`: n elements each.
template <class T> double condition(const TriangleArguments<T>& of, const T* a, T* v, T* x, double* sums) {
    const auto triangle = triangle_of(of.uplo, Matrix<const T>{a, of.n, of.n, of.lda});
    const double norm = matrix_norm(of.norm, triangle, of.diag, sums);
    if (double rcond; no_condition_to_find(of.n, norm, rcond)) return rcond;
    const SafeTriangle<T> safe(of.uplo, of.diag, triangle, sums);
    return reciprocal_condition(of.n, norm, of.norm == 'I', v, x,
                                [&](char op, T* right_hand_side) { return safe.solve(op, right_hand_side); });
}

} // namespace

void nxl_lapack_dtrcon(const char& norm, const char& uplo, const char& diag, const i64& n, const double* a,
                       const i64& lda, double& rcond, double* work, i64*, i64& info, int, int, int) {
    const TriangleArguments<double> given{norm, uplo, diag, n, lda};
    if (given.refused(info)) return;
    Sections<double> parts(work);
    double *const x = parts.take(n), *const v = parts.take(n);
    rcond = condition(given, a, v, x, parts.take(n));
}

void nxl_lapack_ztrcon(const char& norm, const char& uplo, const char& diag, const i64& n, const zcomplex* a,
                       const i64& lda, double& rcond, zcomplex* work, double* rwork, i64& info, int, int, int) {
    const TriangleArguments<zcomplex> given{norm, uplo, diag, n, lda};
    if (given.refused(info)) return;
    Sections<zcomplex> parts(work);
    zcomplex *const x = parts.take(n), *const v = parts.take(n);
    rcond = condition(given, a, v, x, rwork);
}

} // namespace nxl
