// The one list of kernels, with their signatures. Each target (processor class and vector width) fills one table.
// Kernels take integers as 64 bits by reference, do arithmetic on one thread, and report nothing.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// What a table holds where a class has no kernel: it does nothing and returns.
using NoKernel = void (*)();
void no_kernel();

struct KernelTable {
    // Level 1, real.
    double (*dasum)(const i64& n, const double* x, const i64& incx);
    void (*daxpy)(const i64& n, const double& alpha, const double* x, const i64& incx, double* y, const i64& incy);
    void (*dcopy)(const i64& n, const double* x, const i64& incx, double* y, const i64& incy);
    double (*ddot)(const i64& n, const double* x, const i64& incx, const double* y, const i64& incy);
    double (*dnrm2)(const i64& n, const double* x, const i64& incx);
    void (*drot)(const i64& n, double* x, const i64& incx, double* y, const i64& incy, const double& c,
                 const double& s);
    void (*drotg)(double& a, double& b, double& c, double& s);
    void (*drotm)(const i64& n, double* x, const i64& incx, double* y, const i64& incy, const double* param);
    void (*drotmg)(double& d1, double& d2, double& x1, const double& y1, double* param);
    void (*dscal)(const i64& n, const double& alpha, double* x, const i64& incx);
    void (*dswap)(const i64& n, double* x, const i64& incx, double* y, const i64& incy);
    i64 (*idamax)(const i64& n, const double* x, const i64& incx);
    i64 (*idamin)(const i64& n, const double* x, const i64& incx);

    // Level 1, complex.
    double (*dzasum)(const i64& n, const zcomplex* x, const i64& incx);
    double (*dznrm2)(const i64& n, const zcomplex* x, const i64& incx);
    i64 (*izamax)(const i64& n, const zcomplex* x, const i64& incx);
    i64 (*izamin)(const i64& n, const zcomplex* x, const i64& incx);
    void (*zaxpy)(const i64& n, const zcomplex& alpha, const zcomplex* x, const i64& incx, zcomplex* y,
                  const i64& incy);
    void (*zcopy)(const i64& n, const zcomplex* x, const i64& incx, zcomplex* y, const i64& incy);
    void (*zdotc)(zcomplex& result, const i64& n, const zcomplex* x, const i64& incx, const zcomplex* y,
                  const i64& incy);
    void (*zdotu)(zcomplex& result, const i64& n, const zcomplex* x, const i64& incx, const zcomplex* y,
                  const i64& incy);
    void (*zdrot)(const i64& n, zcomplex* x, const i64& incx, zcomplex* y, const i64& incy, const double& c,
                  const double& s);
    void (*zdscal)(const i64& n, const double& alpha, zcomplex* x, const i64& incx);
    void (*zrot)(const i64& n, zcomplex* x, const i64& incx, zcomplex* y, const i64& incy, const double& c,
                 const zcomplex& s);
    void (*zrotg)(zcomplex& a, const zcomplex& b, double& c, zcomplex& s);
    void (*zscal)(const i64& n, const zcomplex& alpha, zcomplex* x, const i64& incx);
    void (*zswap)(const i64& n, zcomplex* x, const i64& incx, zcomplex* y, const i64& incy);

    // Sparse level 1; indices count from 1.
    void (*daxpyi)(const i64& nz, const double& a, const double* x, const i64* indx, double* y);
    double (*ddoti)(const i64& nz, const double* x, const i64* indx, const double* y);
    void (*dgthr)(const i64& nz, const double* y, double* x, const i64* indx);
    void (*dsctr)(const i64& nz, const double* x, const i64* indx, double* y);
    void (*zaxpyi)(const i64& nz, const zcomplex& a, const zcomplex* x, const i64* indx, zcomplex* y);
    void (*zdotci)(zcomplex& result, const i64& nz, const zcomplex* x, const i64* indx, const zcomplex* y);
    void (*zdotui)(zcomplex& result, const i64& nz, const zcomplex* x, const i64* indx, const zcomplex* y);
    void (*zgthr)(const i64& nz, const zcomplex* y, zcomplex* x, const i64* indx);
    void (*zsctr)(const i64& nz, const zcomplex* x, const i64* indx, zcomplex* y);

    // Places kept for the families to come. A kernel that arrives takes one place from its family's row here and gets a
    // member of its own above.
    NoKernel level2[15];
    NoKernel level3_and_lapack[57]; // with the inner blocks of level 3 and the unblocked pieces of LAPACK
    NoKernel tuned_mc_mc3[11];      // GEMM and SYRK pieces of classes 2 and 3
    NoKernel tuned_mc[19];          // further pieces, class 2 alone
};

inline constexpr int kernel_count = 138;
static_assert(sizeof(KernelTable) == kernel_count * sizeof(NoKernel));

} // namespace nxl
