// CBLAS level 1: scalars by value, positions from 0. Nothing is checked, as in the routines behind.
#include "gnu/cblas_arguments.hpp"
#include "nxl.h"
#include "service/export.hpp"

using namespace nxl::cblas;

namespace {

/// A position from 1, or 0 for none, as an index from 0.
CBLAS_INDEX index_of(int position) { return position > 0 ? static_cast<CBLAS_INDEX>(position) - 1 : 0; }

} // namespace

extern "C" {

NXL_EXPORT double cblas_ddot(int N, const double* X, int incX, const double* Y, int incY) noexcept {
    return ddot(&N, X, &incX, Y, &incY);
}

NXL_EXPORT void cblas_zdotu_sub(int N, const void* X, int incX, const void* Y, int incY, void* dotu) noexcept {
    zdotu(z(dotu), &N, z(X), &incX, z(Y), &incY);
}

NXL_EXPORT void cblas_zdotc_sub(int N, const void* X, int incX, const void* Y, int incY, void* dotc) noexcept {
    zdotc(z(dotc), &N, z(X), &incX, z(Y), &incY);
}

NXL_EXPORT double cblas_dnrm2(int N, const double* X, int incX) noexcept { return dnrm2(&N, X, &incX); }

NXL_EXPORT double cblas_dznrm2(int N, const void* X, int incX) noexcept { return dznrm2(&N, z(X), &incX); }

NXL_EXPORT double cblas_dasum(int N, const double* X, int incX) noexcept { return dasum(&N, X, &incX); }

NXL_EXPORT double cblas_dzasum(int N, const void* X, int incX) noexcept { return dzasum(&N, z(X), &incX); }

NXL_EXPORT CBLAS_INDEX cblas_idamax(int N, const double* X, int incX) noexcept {
    return index_of(idamax(&N, X, &incX));
}

NXL_EXPORT CBLAS_INDEX cblas_izamax(int N, const void* X, int incX) noexcept {
    return index_of(izamax(&N, z(X), &incX));
}

NXL_EXPORT CBLAS_INDEX cblas_idamin(int N, const double* X, int incX) noexcept {
    return index_of(idamin(&N, X, &incX));
}

NXL_EXPORT CBLAS_INDEX cblas_izamin(int N, const void* X, int incX) noexcept {
    return index_of(izamin(&N, z(X), &incX));
}

NXL_EXPORT void cblas_dswap(int N, double* X, int incX, double* Y, int incY) noexcept { dswap(&N, X, &incX, Y, &incY); }

NXL_EXPORT void cblas_zswap(int N, void* X, int incX, void* Y, int incY) noexcept {
    zswap(&N, z(X), &incX, z(Y), &incY);
}

NXL_EXPORT void cblas_dcopy(int N, const double* X, int incX, double* Y, int incY) noexcept {
    dcopy(&N, X, &incX, Y, &incY);
}

NXL_EXPORT void cblas_zcopy(int N, const void* X, int incX, void* Y, int incY) noexcept {
    zcopy(&N, z(X), &incX, z(Y), &incY);
}

NXL_EXPORT void cblas_daxpy(int N, double alpha, const double* X, int incX, double* Y, int incY) noexcept {
    daxpy(&N, &alpha, X, &incX, Y, &incY);
}

NXL_EXPORT void cblas_zaxpy(int N, const void* alpha, const void* X, int incX, void* Y, int incY) noexcept {
    zaxpy(&N, z(alpha), z(X), &incX, z(Y), &incY);
}

NXL_EXPORT void cblas_dscal(int N, double alpha, double* X, int incX) noexcept { dscal(&N, &alpha, X, &incX); }

NXL_EXPORT void cblas_zscal(int N, const void* alpha, void* X, int incX) noexcept { zscal(&N, z(alpha), z(X), &incX); }

NXL_EXPORT void cblas_zdscal(int N, double alpha, void* X, int incX) noexcept { zdscal(&N, &alpha, z(X), &incX); }

NXL_EXPORT void cblas_drotg(double* a, double* b, double* c, double* s) noexcept { drotg(a, b, c, s); }

NXL_EXPORT void cblas_zrotg(void* a, void* b, double* c, void* s) noexcept { zrotg(z(a), z(b), c, z(s)); }

NXL_EXPORT void cblas_drotmg(double* d1, double* d2, double* b1, double b2, double* P) noexcept {
    drotmg(d1, d2, b1, &b2, P);
}

NXL_EXPORT void cblas_drot(int N, double* X, int incX, double* Y, int incY, double c, double s) noexcept {
    drot(&N, X, &incX, Y, &incY, &c, &s);
}

NXL_EXPORT void cblas_zdrot(int N, void* X, int incX, void* Y, int incY, double c, double s) noexcept {
    zdrot(&N, z(X), &incX, z(Y), &incY, &c, &s);
}

NXL_EXPORT void cblas_drotm(int N, double* X, int incX, double* Y, int incY, const double* P) noexcept {
    drotm(&N, X, &incX, Y, &incY, P);
}

} // extern "C"
