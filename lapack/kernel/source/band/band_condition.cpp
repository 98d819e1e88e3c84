// dgbcon, zgbcon, dpbcon, zpbcon: condition of band matrices from their factors.
#include "lapack/kernel/source/band/band_condition.hpp"
#include "lapack/kernel/source/band/band_lu.hpp"
#include "lapack/kernel/source/condition/cholesky_condition.hpp"
#include "service/arguments.hpp"

namespace nxl {

/// Multipliers are at most 1, and so the solution with L is not watched.
template <class T>
void gbcon(const char& norm, const i64& n, const i64& kl, const i64& ku, const T* ab, const i64& ldab, const i64* ipiv,
           const double& anorm, double& rcond, T* work, Spare<T>* spare, i64& info, int) {
    Arguments arguments(routine<T>("GBCON"));
    arguments.letter(1, norm, "1OI").size(2, n).size(3, kl).size(4, ku).leading(6, ldab, 2 * kl + ku + 1);
    if (arguments.expect(8, !(anorm < 0.0)).refused(info)) return;
    if (no_condition_to_find(n, anorm, rcond)) return;
    const auto space = estimate_space(n, work, spare);
    const auto factors = BandLu<T>::of(ab, ldab, n, kl, ku, ipiv);
    const SafeTriangle<T> upper('U', 'N', factors.upper, space.sizes);
    rcond = reciprocal_condition(n, anorm, norm == 'I', space.v, space.x, [&](char op, T* x) {
        const Matrix<T> one{x, n, 1, n};
        if (op == 'N') factors.solve_lower('N', one);
        const double scale = upper.solve(op, x);
        if (op != 'N') factors.solve_lower('C', one);
        return scale;
    });
}
template decltype(gbcon<double>) gbcon<double>;
template decltype(gbcon<zcomplex>) gbcon<zcomplex>;

template <class T>
void pbcon(const char& uplo, const i64& n, const i64& kd, const T* ab, const i64& ldab, const double& anorm,
           double& rcond, T* work, Spare<T>* spare, i64& info, int) {
    Arguments arguments(routine<T>("PBCON"));
    arguments.letter(1, uplo, "UL").size(2, n).size(3, kd).leading(5, ldab, kd + 1).expect(6, !(anorm < 0.0));
    if (arguments.refused(info)) return;
    rcond = cholesky_condition(uplo, triangular_band_of(uplo, ab, ldab, n, kd), anorm, work, spare);
}
template decltype(pbcon<double>) pbcon<double>;
template decltype(pbcon<zcomplex>) pbcon<zcomplex>;

} // namespace nxl
