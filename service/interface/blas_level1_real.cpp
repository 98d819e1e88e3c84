// BLAS level 1, real: entries. No argument is checked here; a negative n goes down as it is.
#include "blas/kernel/default_em64t/level1/xf_l1_omp.hpp"
#include "nxl.h"
#include "service/export.hpp"
#include "service/kernel_slot.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT double dasum(const int* n, const double* x, const int* incx) noexcept {
    return slot<&KernelTable::dasum>(*n, x, *incx);
}

NXL_EXPORT void daxpy(const int* n, const double* alpha, const double* x, const int* incx, double* y,
                      const int* incy) noexcept {
    nxl_blas_daxpy(*n, *alpha, x, *incx, y, *incy);
}

NXL_EXPORT void dcopy(const int* n, const double* x, const int* incx, double* y, const int* incy) noexcept {
    slot<&KernelTable::dcopy>(*n, x, *incx, y, *incy);
}

NXL_EXPORT double ddot(const int* n, const double* x, const int* incx, const double* y, const int* incy) noexcept {
    return nxl_blas_ddot(*n, x, *incx, y, *incy);
}

NXL_EXPORT double dnrm2(const int* n, const double* x, const int* incx) noexcept {
    return slot<&KernelTable::dnrm2>(*n, x, *incx);
}

NXL_EXPORT void drot(const int* n, double* x, const int* incx, double* y, const int* incy, const double* c,
                     const double* s) noexcept {
    slot<&KernelTable::drot>(*n, x, *incx, y, *incy, *c, *s);
}

NXL_EXPORT void drotg(double* a, double* b, double* c, double* s) noexcept {
    slot<&KernelTable::drotg>(*a, *b, *c, *s);
}

NXL_EXPORT void drotm(const int* n, double* x, const int* incx, double* y, const int* incy,
                      const double* param) noexcept {
    slot<&KernelTable::drotm>(*n, x, *incx, y, *incy, param);
}

NXL_EXPORT void drotmg(double* d1, double* d2, double* x1, const double* y1, double* param) noexcept {
    slot<&KernelTable::drotmg>(*d1, *d2, *x1, *y1, param);
}

NXL_EXPORT void dscal(const int* n, const double* alpha, double* x, const int* incx) noexcept {
    slot<&KernelTable::dscal>(*n, *alpha, x, *incx);
}

NXL_EXPORT void dswap(const int* n, double* x, const int* incx, double* y, const int* incy) noexcept {
    slot<&KernelTable::dswap>(*n, x, *incx, y, *incy);
}

NXL_EXPORT int idamax(const int* n, const double* x, const int* incx) noexcept {
    return static_cast<int>(slot<&KernelTable::idamax>(*n, x, *incx));
}

NXL_EXPORT int idamin(const int* n, const double* x, const int* incx) noexcept {
    return static_cast<int>(slot<&KernelTable::idamin>(*n, x, *incx));
}

} // extern "C"
