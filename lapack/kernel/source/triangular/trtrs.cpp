// dtrtrs, ztrtrs: solution of a triangular system, after a look for zeros on the diagonal.
#include "blas/calls.hpp"
#include "lapack/kernel/source/triangular/triangular.hpp"
#include "lapack/kernel/source/triangular/triangular_parts.hpp"
#include "service/arguments.hpp"

namespace nxl {
template <class T>
void trtrs(const char& uplo, const char& trans, const char& diag, const i64& n, const i64& nrhs, const T* a,
           const i64& lda, T* b, const i64& ldb, i64& info, int, int, int) {
    Arguments arguments(routine<T>("TRTRS"));
    arguments.letter(1, uplo, "UL").letter(2, trans, "NTC").letter(3, diag, "UN");
    if (arguments.size(4, n).size(5, nrhs).leading(7, lda, n).leading(9, ldb, n).refused(info)) return;
    if (is_one_of(diag, "N")) info = first_zero_on_diagonal(n, a, lda);
    if (info == 0) trsm('L', uplo, trans, diag, n, nrhs, 1.0, a, lda, b, ldb);
}
template decltype(trtrs<double>) trtrs<double>;
template decltype(trtrs<zcomplex>) trtrs<zcomplex>;

} // namespace nxl
