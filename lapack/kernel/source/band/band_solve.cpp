// dgbtrs, zgbtrs, dpbtrs, zpbtrs: solutions of band systems from their factors.
#include "lapack/kernel/source/band/band_solve.hpp"
#include "lapack/kernel/source/band/band_cholesky.hpp"
#include "lapack/kernel/source/band/band_lu.hpp"
#include "service/arguments.hpp"

namespace nxl {

template <class T>
void gbtrs(const char& trans, const i64& n, const i64& kl, const i64& ku, const i64& nrhs, const T* ab, const i64& ldab,
           const i64* ipiv, T* b, const i64& ldb, i64& info, int) {
    Arguments arguments(routine<T>("GBTRS"));
    arguments.letter(1, trans, "NTC").size(2, n).size(3, kl).size(4, ku).size(5, nrhs);
    arguments.leading(7, ldab, 2 * kl + ku + 1).leading(10, ldb, n);
    if (arguments.refused(info) || n == 0 || nrhs == 0) return;
    BandLu<T>::of(ab, ldab, n, kl, ku, ipiv).solve(trans, {b, n, nrhs, ldb});
}
template decltype(gbtrs<double>) gbtrs<double>;
template decltype(gbtrs<zcomplex>) gbtrs<zcomplex>;

template <class T>
void pbtrs(const char& uplo, const i64& n, const i64& kd, const i64& nrhs, const T* ab, const i64& ldab, T* b,
           const i64& ldb, i64& info, int) {
    Arguments arguments(routine<T>("PBTRS"));
    arguments.letter(1, uplo, "UL").size(2, n).size(3, kd).size(4, nrhs).leading(6, ldab, kd + 1).leading(8, ldb, n);
    if (arguments.refused(info) || n == 0 || nrhs == 0) return;
    solve_band_cholesky(uplo, triangular_band_of(uplo, ab, ldab, n, kd), Matrix<T>{b, n, nrhs, ldb});
}
template decltype(pbtrs<double>) pbtrs<double>;
template decltype(pbtrs<zcomplex>) pbtrs<zcomplex>;

} // namespace nxl
