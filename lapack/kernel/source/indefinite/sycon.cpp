// dsycon, zsycon, zhecon: reciprocal condition from the factors. Their elements are bounded by the pivoting, so that
// the solutions need no scaling.
#include "lapack/kernel/source/indefinite/sycon.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/condition/reciprocal_condition.hpp"
#include "lapack/kernel/source/indefinite/solve.hpp"

namespace nxl {

template <class T, Symmetry kind>
void sycon(const char& uplo, const i64& n, const T* a, const i64& lda, const i64* ipiv, const double& anorm,
           double& rcond, T* work, i64& info, int) {
    constexpr RoutineLetters name = routine_of<T, kind>("CON");
    Arguments arguments(name);
    arguments.letter(1, uplo, "UL").size(2, n).leading(4, lda, n).expect(6, !(anorm < 0.0));
    if (arguments.refused(info)) return;
    rcond = n == 0 ? 1.0 : 0.0;
    const Matrix<const T> factors{a, n, n, lda};
    if (n == 0 || anorm == 0.0 || zero_pivot_of({uplo == 'U', n}, factors, ipiv) != 0) return;
    const SolveSpace<T> space(1);
    if (!space.there()) return refuse_for_memory(name, info);
    rcond = reciprocal_condition(n, anorm, false, work + n, work, [&](char op, T* x) {
        solve_factored_one<T, kind>(op, uplo, factors, ipiv, x, space);
        return 1.0;
    });
}
template decltype(sycon<double, Symmetry::symmetric>) sycon<double, Symmetry::symmetric>;
template decltype(sycon<zcomplex, Symmetry::symmetric>) sycon<zcomplex, Symmetry::symmetric>;
template decltype(sycon<zcomplex, Symmetry::hermitian>) sycon<zcomplex, Symmetry::hermitian>;

} // namespace nxl
