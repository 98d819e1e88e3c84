// dgetrs, zgetrs: solution of a general system from its LU factors.
#include "blas/calls.hpp"
#include "lapack/kernel/source/lu/lu.hpp"
#include "service/arguments.hpp"

namespace nxl {
template <class T>
void getrs(const char& trans, const i64& n, const i64& nrhs, const T* a, const i64& lda, const i64* ipiv, T* b,
           const i64& ldb, i64& info, int) {
    Arguments arguments(routine<T>("GETRS"));
    arguments.letter(1, trans, "NTC").size(2, n).size(3, nrhs).leading(5, lda, n).leading(8, ldb, n);
    if (arguments.refused(info) || n == 0 || nrhs == 0) return;
    if (is_one_of(trans, "N")) { // A = P^T L U
        laswp(nrhs, b, ldb, 1, n, ipiv, 1);
        trsm('L', 'L', 'N', 'U', n, nrhs, 1.0, a, lda, b, ldb);
        trsm('L', 'U', 'N', 'N', n, nrhs, 1.0, a, lda, b, ldb);
    } else { // A^T = U^T L^T P
        trsm('L', 'U', trans, 'N', n, nrhs, 1.0, a, lda, b, ldb);
        trsm('L', 'L', trans, 'U', n, nrhs, 1.0, a, lda, b, ldb);
        laswp(nrhs, b, ldb, 1, n, ipiv, -1);
    }
}
template decltype(getrs<double>) getrs<double>;
template decltype(getrs<zcomplex>) getrs<zcomplex>;

} // namespace nxl
