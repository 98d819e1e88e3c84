// Solution of A X = B from the Cholesky factor: two triangular solutions.
#include "lapack/kernel/source/cholesky/potrs.hpp"
#include "blas/calls.hpp"
#include "service/arguments.hpp"

namespace nxl {
template <class T>
void potrs(const char& uplo, const i64& n, const i64& nrhs, const T* a, const i64& lda, T* b, const i64& ldb, i64& info,
           int) {
    Arguments arguments(routine<T>("POTRS"));
    arguments.letter(1, uplo, "UL").size(2, n).size(3, nrhs).leading(5, lda, n).leading(7, ldb, n);
    if (arguments.refused(info) || n == 0 || nrhs == 0) return;
    const Matrix<const T> factor{a, n, n, lda};
    const Matrix<T> x{b, n, nrhs, ldb};
    trsm('L', uplo, uplo == 'U' ? 'C' : 'N', 'N', 1.0, factor, x);
    trsm('L', uplo, uplo == 'U' ? 'N' : 'C', 'N', 1.0, factor, x);
}
template decltype(potrs<double>) potrs<double>;
template decltype(potrs<zcomplex>) potrs<zcomplex>;

} // namespace nxl
