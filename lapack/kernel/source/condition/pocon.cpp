// dpocon, zpocon: the inverse of a Hermitian matrix is Hermitian, so that it is one product in each step.
#include "lapack/kernel/source/condition/pocon.hpp"
#include "lapack/kernel/source/condition/cholesky_condition.hpp"
#include "service/arguments.hpp"

namespace nxl {

template <class T>
void pocon(const char& uplo, const i64& n, const T* a, const i64& lda, const double& anorm, double& rcond, T* work,
           Spare<T>* spare, i64& info, int) {
    Arguments arguments(routine<T>("POCON"));
    arguments.letter(1, uplo, "UL").size(2, n).leading(4, lda, n).expect(5, !(anorm < 0.0));
    if (arguments.refused(info)) return;
    const Matrix<const T> factor{a, n, n, lda};
    rcond = cholesky_condition(uplo, triangle_of(uplo, factor), anorm, work, spare);
}
template decltype(pocon<double>) pocon<double>;
template decltype(pocon<zcomplex>) pocon<zcomplex>;

} // namespace nxl
