// BLAS level 1, complex: entries. No argument is checked here; a negative n goes down as it is.
#include "blas/kernel/default_em64t/level1/xf_l1_omp.hpp"
#include "nxl.h"
#include "service/export.hpp"
#include "service/kernel_slot.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT double dzasum(const int* n, const nxl_z* x, const int* incx) noexcept {
    return slot<&KernelTable::dzasum>(*n, x, *incx);
}

NXL_EXPORT double dznrm2(const int* n, const nxl_z* x, const int* incx) noexcept {
    return slot<&KernelTable::dznrm2>(*n, x, *incx);
}

NXL_EXPORT int izamax(const int* n, const nxl_z* x, const int* incx) noexcept {
    return static_cast<int>(slot<&KernelTable::izamax>(*n, x, *incx));
}

NXL_EXPORT int izamin(const int* n, const nxl_z* x, const int* incx) noexcept {
    return static_cast<int>(slot<&KernelTable::izamin>(*n, x, *incx));
}

NXL_EXPORT void zaxpy(const int* n, const nxl_z* alpha, const nxl_z* x, const int* incx, nxl_z* y,
                      const int* incy) noexcept {
    nxl_blas_zaxpy(*n, *alpha, x, *incx, y, *incy);
}

NXL_EXPORT void zcopy(const int* n, const nxl_z* x, const int* incx, nxl_z* y, const int* incy) noexcept {
    slot<&KernelTable::zcopy>(*n, x, *incx, y, *incy);
}

NXL_EXPORT void zdotc(nxl_z* result, const int* n, const nxl_z* x, const int* incx, const nxl_z* y,
                      const int* incy) noexcept {
    nxl_blas_zdotc(*result, *n, x, *incx, y, *incy);
}

NXL_EXPORT void zdotu(nxl_z* result, const int* n, const nxl_z* x, const int* incx, const nxl_z* y,
                      const int* incy) noexcept {
    slot<&KernelTable::zdotu>(*result, *n, x, *incx, y, *incy);
}

NXL_EXPORT void zdrot(const int* n, nxl_z* x, const int* incx, nxl_z* y, const int* incy, const double* c,
                      const double* s) noexcept {
    slot<&KernelTable::zdrot>(*n, x, *incx, y, *incy, *c, *s);
}

NXL_EXPORT void zdscal(const int* n, const double* alpha, nxl_z* x, const int* incx) noexcept {
    slot<&KernelTable::zdscal>(*n, *alpha, x, *incx);
}

NXL_EXPORT void ZROT(const int* n, nxl_z* x, const int* incx, nxl_z* y, const int* incy, const double* c,
                     const nxl_z* s) noexcept {
    slot<&KernelTable::zrot>(*n, x, *incx, y, *incy, *c, *s);
}

NXL_EXPORT void zrotg(nxl_z* a, const nxl_z* b, double* c, nxl_z* s) noexcept {
    slot<&KernelTable::zrotg>(*a, *b, *c, *s);
}

NXL_EXPORT void zscal(const int* n, const nxl_z* alpha, nxl_z* x, const int* incx) noexcept {
    slot<&KernelTable::zscal>(*n, *alpha, x, *incx);
}

NXL_EXPORT void zswap(const int* n, nxl_z* x, const int* incx, nxl_z* y, const int* incy) noexcept {
    slot<&KernelTable::zswap>(*n, x, *incx, y, *incy);
}

} // extern "C"
