// Solution of A X = B from the Cholesky factor: two triangular solutions.
#include "blas/calls.hpp"
#include "lapack/kernel/source/cholesky/cholesky.hpp"
#include "service/arguments.hpp"

namespace nxl {
template <class T>
void potrs(const char& uplo, const i64& n, const i64& nrhs, const T* a, const i64& lda, T* b, const i64& ldb, i64& info,
           int) {
    Arguments arguments(routine<T>("POTRS"));
    arguments.letter(1, uplo, "UL").size(2, n).size(3, nrhs).leading(5, lda, n).leading(7, ldb, n);
    if (arguments.refused(info) || n == 0 || nrhs == 0) return;
    const bool upper = is_one_of(uplo, "U");
    trsm('L', uplo, upper ? 'C' : 'N', 'N', n, nrhs, 1.0, a, lda, b, ldb);
    trsm('L', uplo, upper ? 'N' : 'C', 'N', n, nrhs, 1.0, a, lda, b, ldb);
}
template decltype(potrs<double>) potrs<double>;
template decltype(potrs<zcomplex>) potrs<zcomplex>;

} // namespace nxl
