// dtrtrs, ztrtrs: solution of a triangular system, after a look for zeros on the diagonal.
#include "lapack/kernel/source/triangular/trtrs.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/triangular/triangular_parts.hpp"
#include "service/arguments.hpp"

namespace nxl {
template <class T>
void trtrs(const char& uplo, const char& trans, const char& diag, const i64& n, const i64& nrhs, const T* a,
           const i64& lda, T* b, const i64& ldb, i64& info, int, int, int) {
    Arguments arguments(routine<T>("TRTRS"));
    arguments.letter(1, uplo, "UL").letter(2, trans, "NTC").letter(3, diag, "UN");
    if (arguments.size(4, n).size(5, nrhs).leading(7, lda, n).leading(9, ldb, n).refused(info)) return;
    const Matrix<const T> triangle{a, n, n, lda};
    if (diag == 'N') info = first_zero_on_diagonal(triangle);
    if (info == 0) trsm('L', uplo, trans, diag, 1.0, triangle, Matrix<T>{b, n, nrhs, ldb});
}
template decltype(trtrs<double>) trtrs<double>;
template decltype(trtrs<zcomplex>) trtrs<zcomplex>;

} // namespace nxl
