// dgetrs, zgetrs: solution of a general system from its LU factors.
#include "lapack/kernel/source/lu/getrs.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/lu/laswp.hpp"
#include "service/arguments.hpp"

namespace nxl {
template <class T>
void getrs(const char& trans, const i64& n, const i64& nrhs, const T* a, const i64& lda, const i64* ipiv, T* b,
           const i64& ldb, i64& info, int) {
    Arguments arguments(routine<T>("GETRS"));
    arguments.letter(1, trans, "NTC").size(2, n).size(3, nrhs).leading(5, lda, n).leading(8, ldb, n);
    if (arguments.refused(info) || n == 0 || nrhs == 0) return;
    const Matrix<const T> factors{a, n, n, lda};
    const Matrix<T> x{b, n, nrhs, ldb};
    if (trans == 'N') { // A = P^T L U
        laswp(nrhs, b, ldb, 1, n, ipiv, 1);
        trsm('L', 'L', 'N', 'U', 1.0, factors, x);
        trsm('L', 'U', 'N', 'N', 1.0, factors, x);
    } else { // A^T = U^T L^T P
        trsm('L', 'U', trans, 'N', 1.0, factors, x);
        trsm('L', 'L', trans, 'U', 1.0, factors, x);
        laswp(nrhs, b, ldb, 1, n, ipiv, -1);
    }
}
template decltype(getrs<double>) getrs<double>;
template decltype(getrs<zcomplex>) getrs<zcomplex>;

} // namespace nxl
