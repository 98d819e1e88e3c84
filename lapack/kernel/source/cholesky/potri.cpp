// dpotri, zpotri: inverse of a positive definite matrix from its Cholesky factor.
#include "lapack/kernel/source/cholesky/potri.hpp"
#include "lapack/kernel/source/cholesky/lauum.hpp"
#include "lapack/kernel/source/triangular/trtri.hpp"
#include "service/arguments.hpp"

namespace nxl {
/// A^-1 = U^-1 U^-H or L^-H L^-1.
template <class T> void potri(const char& uplo, const i64& n, T* a, const i64& lda, i64& info, int) {
    if (Arguments(routine<T>("POTRI")).letter(1, uplo, "UL").size(2, n).leading(4, lda, n).refused(info)) return;
    trtri(uplo, 'N', n, a, lda, info);
    if (info == 0) lauum(uplo, n, a, lda, info);
}
template decltype(potri<double>) potri<double>;
template decltype(potri<zcomplex>) potri<zcomplex>;

} // namespace nxl
