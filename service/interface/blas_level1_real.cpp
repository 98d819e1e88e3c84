// BLAS level 1, real: entries. No argument is checked here; a negative n goes down as it is.
#include "blas/kernel/default_em64t/level1/slots.hpp"
#include "blas/kernel/default_em64t/level1/xf_l1_omp.hpp"
#include "nxl.h"
#include "service/export.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT double dasum(const int* n, const double* x, const int* incx) noexcept {
    const i64 n64 = *n, incx64 = *incx;
    return dasum_slot(n64, x, incx64);
}

NXL_EXPORT void daxpy(const int* n, const double* alpha, const double* x, const int* incx, double* y,
                      const int* incy) noexcept {
    const i64 n64 = *n, incx64 = *incx, incy64 = *incy;
    nxl_blas_daxpy(&n64, alpha, x, &incx64, y, &incy64);
}

NXL_EXPORT void dcopy(const int* n, const double* x, const int* incx, double* y, const int* incy) noexcept {
    const i64 n64 = *n, incx64 = *incx, incy64 = *incy;
    dcopy_slot(n64, x, incx64, y, incy64);
}

NXL_EXPORT double ddot(const int* n, const double* x, const int* incx, const double* y, const int* incy) noexcept {
    const i64 n64 = *n, incx64 = *incx, incy64 = *incy;
    return nxl_blas_ddot(&n64, x, &incx64, y, &incy64);
}

NXL_EXPORT double dnrm2(const int* n, const double* x, const int* incx) noexcept {
    const i64 n64 = *n, incx64 = *incx;
    return dnrm2_slot(n64, x, incx64);
}

NXL_EXPORT void drot(const int* n, double* x, const int* incx, double* y, const int* incy, const double* c,
                     const double* s) noexcept {
    const i64 n64 = *n, incx64 = *incx, incy64 = *incy;
    drot_slot(n64, x, incx64, y, incy64, *c, *s);
}

NXL_EXPORT void drotg(double* a, double* b, double* c, double* s) noexcept { drotg_slot(*a, *b, *c, *s); }

NXL_EXPORT void drotm(const int* n, double* x, const int* incx, double* y, const int* incy,
                      const double* param) noexcept {
    const i64 n64 = *n, incx64 = *incx, incy64 = *incy;
    drotm_slot(n64, x, incx64, y, incy64, param);
}

NXL_EXPORT void drotmg(double* d1, double* d2, double* x1, const double* y1, double* param) noexcept {
    drotmg_slot(*d1, *d2, *x1, *y1, param);
}

NXL_EXPORT void dscal(const int* n, const double* alpha, double* x, const int* incx) noexcept {
    const i64 n64 = *n, incx64 = *incx;
    dscal_slot(n64, *alpha, x, incx64);
}

NXL_EXPORT void dswap(const int* n, double* x, const int* incx, double* y, const int* incy) noexcept {
    const i64 n64 = *n, incx64 = *incx, incy64 = *incy;
    dswap_slot(n64, x, incx64, y, incy64);
}

NXL_EXPORT int idamax(const int* n, const double* x, const int* incx) noexcept {
    const i64 n64 = *n, incx64 = *incx;
    return static_cast<int>(idamax_slot(n64, x, incx64));
}

NXL_EXPORT int idamin(const int* n, const double* x, const int* incx) noexcept {
    const i64 n64 = *n, incx64 = *incx;
    return static_cast<int>(idamin_slot(n64, x, incx64));
}

} // extern "C"
