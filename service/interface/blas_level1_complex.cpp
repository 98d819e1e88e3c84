// BLAS level 1, complex: entries. No argument is checked here; a negative n goes down as it is.
#include "blas/kernel/default_em64t/level1/slots.hpp"
#include "blas/kernel/default_em64t/level1/xf_l1_omp.hpp"
#include "nxl.h"
#include "service/export.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT double dzasum(const int* n, const nxl_z* x, const int* incx) noexcept {
    const i64 n64 = *n, incx64 = *incx;
    return dzasum_slot(n64, x, incx64);
}

NXL_EXPORT double dznrm2(const int* n, const nxl_z* x, const int* incx) noexcept {
    const i64 n64 = *n, incx64 = *incx;
    return dznrm2_slot(n64, x, incx64);
}

NXL_EXPORT int izamax(const int* n, const nxl_z* x, const int* incx) noexcept {
    const i64 n64 = *n, incx64 = *incx;
    return static_cast<int>(izamax_slot(n64, x, incx64));
}

NXL_EXPORT int izamin(const int* n, const nxl_z* x, const int* incx) noexcept {
    const i64 n64 = *n, incx64 = *incx;
    return static_cast<int>(izamin_slot(n64, x, incx64));
}

NXL_EXPORT void zaxpy(const int* n, const nxl_z* alpha, const nxl_z* x, const int* incx, nxl_z* y,
                      const int* incy) noexcept {
    const i64 n64 = *n, incx64 = *incx, incy64 = *incy;
    nxl_blas_zaxpy(&n64, alpha, x, &incx64, y, &incy64);
}

NXL_EXPORT void zcopy(const int* n, const nxl_z* x, const int* incx, nxl_z* y, const int* incy) noexcept {
    const i64 n64 = *n, incx64 = *incx, incy64 = *incy;
    zcopy_slot(n64, x, incx64, y, incy64);
}

NXL_EXPORT void zdotc(nxl_z* result, const int* n, const nxl_z* x, const int* incx, const nxl_z* y,
                      const int* incy) noexcept {
    const i64 n64 = *n, incx64 = *incx, incy64 = *incy;
    nxl_blas_zdotc(result, &n64, x, &incx64, y, &incy64);
}

NXL_EXPORT void zdotu(nxl_z* result, const int* n, const nxl_z* x, const int* incx, const nxl_z* y,
                      const int* incy) noexcept {
    const i64 n64 = *n, incx64 = *incx, incy64 = *incy;
    zdotu_slot(*result, n64, x, incx64, y, incy64);
}

NXL_EXPORT void zdrot(const int* n, nxl_z* x, const int* incx, nxl_z* y, const int* incy, const double* c,
                      const double* s) noexcept {
    const i64 n64 = *n, incx64 = *incx, incy64 = *incy;
    zdrot_slot(n64, x, incx64, y, incy64, *c, *s);
}

NXL_EXPORT void zdscal(const int* n, const double* alpha, nxl_z* x, const int* incx) noexcept {
    const i64 n64 = *n, incx64 = *incx;
    zdscal_slot(n64, *alpha, x, incx64);
}

NXL_EXPORT void ZROT(const int* n, nxl_z* x, const int* incx, nxl_z* y, const int* incy, const double* c,
                     const nxl_z* s) noexcept {
    const i64 n64 = *n, incx64 = *incx, incy64 = *incy;
    zrot_slot(n64, x, incx64, y, incy64, *c, *s);
}

NXL_EXPORT void zrotg(nxl_z* a, const nxl_z* b, double* c, nxl_z* s) noexcept { zrotg_slot(*a, *b, *c, *s); }

NXL_EXPORT void zscal(const int* n, const nxl_z* alpha, nxl_z* x, const int* incx) noexcept {
    const i64 n64 = *n, incx64 = *incx;
    zscal_slot(n64, *alpha, x, incx64);
}

NXL_EXPORT void zswap(const int* n, nxl_z* x, const int* incx, nxl_z* y, const int* incy) noexcept {
    const i64 n64 = *n, incx64 = *incx, incy64 = *incy;
    zswap_slot(n64, x, incx64, y, incy64);
}

} // extern "C"
