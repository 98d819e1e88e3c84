// dpteqr, zpteqr: the squares of the singular values of the Cholesky factor, which have their digits however small they
// are. Barlow and Demmel, SIAM J. Numer. Anal. 27 (1990).
#include "lapack/kernel/source/eigen/pteqr.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/singular/bidiagonal_qr.hpp"
#include "service/arguments.hpp"
#include <algorithm>
#include <cmath>

namespace nxl {
namespace {

/// T = B B^T, B lower bidiagonal with diagonal d and off-diagonal e. The order of the first leading minor that is not
/// positive, or 0.
i64 factor(i64 n, double* d, double* e) {
    for (i64 i = 0; i < n; ++i) {
        if (!(d[i] > 0.0)) return i + 1; // NaN, too
        d[i] = std::sqrt(d[i]);
        if (i + 1 == n) break;
        e[i] /= d[i];
        d[i + 1] -= e[i] * e[i];
    }
    return 0;
}

} // namespace

template <class T>
void pteqr(const char& compz, const i64& n, double* d, double* e, T* z, const i64& ldz, double*, i64& info, int) {
    constexpr RoutineLetters name = routine<T>("PTEQR");
    Arguments arguments(name);
    arguments.letter(1, compz, "NVI").size(2, n).leading(6, ldz, compz == 'N' ? 1 : n);
    if (arguments.refused(info) || n == 0) return;
    const Matrix<T> vectors{z, compz == 'N' ? 0 : n, n, ldz}, none{nullptr, 0, 0, 1};
    for (i64 j = 0; j < n && compz == 'I'; ++j) {
        std::fill_n(vectors.at(0, j), n, T{});
        vectors(j, j) = T(1.0);
    }
    info = factor(n, d, e);
    if (info > 0) return;
    const i64 failed = bidiagonal_qr<T>('L', n, d, e, {none, vectors, none});
    if (failed < 0) return refuse_for_memory(name, info);
    if (failed > 0) info = n + failed;
    for (i64 i = 0; i < n && failed == 0; ++i) d[i] *= d[i];
}
template decltype(pteqr<double>) pteqr<double>;
template decltype(pteqr<zcomplex>) pteqr<zcomplex>;

} // namespace nxl
