// The kernel table of this target.
#include "blas/kernels/kernels.hpp"

namespace nxl::NXL_TARGET {
namespace {

consteval KernelTable make_table() {
    KernelTable table{
        .dasum = dasum,
        .daxpy = daxpy,
        .dcopy = dcopy,
        .ddot = ddot,
        .dnrm2 = dnrm2,
        .drot = drot,
        .drotg = drotg,
        .drotm = drotm,
        .drotmg = drotmg,
        .dscal = dscal,
        .dswap = dswap,
        .idamax = idamax,
        .idamin = idamin,

        .dzasum = dzasum,
        .dznrm2 = dznrm2,
        .izamax = izamax,
        .izamin = izamin,
        .zaxpy = zaxpy,
        .zcopy = zcopy,
        .zdotc = zdotc,
        .zdotu = zdotu,
        .zdrot = zdrot,
        .zdscal = zdscal,
        .zrot = zrot,
        .zrotg = zrotg,
        .zscal = zscal,
        .zswap = zswap,

        .daxpyi = daxpyi,
        .ddoti = ddoti,
        .dgthr = dgthr,
        .dsctr = dsctr,
        .zaxpyi = zaxpyi,
        .zdotci = zdotci,
        .zdotui = zdotui,
        .zgthr = zgthr,
        .zsctr = zsctr,

        .level2 = {},
        .level3_and_lapack = {},
        .tuned_mc_mc3 = {},
        .tuned_mc = {},
    };
    for (NoKernel& place : table.level2) place = no_kernel;
    for (NoKernel& place : table.level3_and_lapack) place = no_kernel;
    for (NoKernel& place : table.tuned_mc_mc3) place = no_kernel;
    for (NoKernel& place : table.tuned_mc) place = no_kernel;
    return table;
}

} // namespace

extern const KernelTable kernel_table;
constinit const KernelTable kernel_table = make_table();

} // namespace nxl::NXL_TARGET
