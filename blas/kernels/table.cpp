// The kernel table of this target.
#include "blas/kernels/kernels.hpp"

namespace nxl::NXL_TARGET {
namespace {

template <class... Args> void does_nothing(Args...) {}

/// The kernel itself where the class has it, else a routine that does nothing.
template <bool Present, class... Args> consteval auto only(void (*kernel)(Args...)) {
    return Present ? kernel : &does_nothing<Args...>;
}

consteval KernelTable make_table() { // NOLINT(readability-function-size): it is a table
    return {
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

        .dgemv = dgemv,
        .dger = dger,
        .dsymv = dsymv,
        .dsyr = dsyr,
        .dsyr2 = dsyr2,
        .dtbsv = dtbsv,
        .dtrmv = dtrmv,
        .dtrsv = dtrsv,
        .zgemv = zgemv,
        .zgerc = zgerc,
        .zgeru = zgeru,
        .zhemv = zhemv,
        .zher = zher,
        .zher2 = zher2,
        .zsymv = zsymv,
        .zsyr = zsyr,
        .ztbsv = ztbsv,
        .ztrmv = ztrmv,
        .ztrsv = ztrsv,

        .xdgemm = xdgemm,
        .xzgemm = xzgemm,
        .dsymm = dsymm,
        .zsymm = zsymm,
        .zhemm = zhemm,
        .dsyrk = dsyrk,
        .zsyrk = zsyrk,
        .zherk = zherk,
        .dsyr2k = dsyr2k,
        .zsyr2k = zsyr2k,
        .zher2k = zher2k,
        .dgemmt = dgemmt,
        .zgemmt = zgemmt,
        .dtrmm = dtrmm,
        .ztrmm = ztrmm,
        .dtrsm = dtrsm,
        .ztrsm = ztrsm,

        .dgetrf_leaf = dgetrf_leaf,
        .zgetrf_leaf = zgetrf_leaf,
        .dgetrf_update = dgetrf_update,
        .zgetrf_update = zgetrf_update,
        .dreflect_panel = dreflect_panel,
        .zreflect_panel = zreflect_panel,
        .xdpotf2_u = xdpotf2_u,
        .xdpotf2_l = xdpotf2_l,
        .xzpotf2_u = xzpotf2_u,
        .xzpotf2_l = xzpotf2_l,
        .dtrti2 = dtrti2,
        .ztrti2 = ztrti2,
        .dlauu2 = dlauu2,
        .zlauu2 = zlauu2,

        .xdgemm_copy_at = xdgemm_copy_at,
        .xzgemm_copy_at = xzgemm_copy_at,

        .xdgemm_beta = only<kClass >= CpuClass::mc>(xdgemm_beta),
        .xzgemm_beta = only<kClass >= CpuClass::mc>(xzgemm_beta),
        .xdgemm_tile = only<kClass >= CpuClass::mc>(xdgemm_tile),
        .xzgemm_tile = only<kClass >= CpuClass::mc>(xzgemm_tile),
        .xdgemm_tile_pb = only<kClass >= CpuClass::mc>(xdgemm_tile_pb),
        .xzgemm_tile_pb = only<kClass >= CpuClass::mc>(xzgemm_tile_pb),
        .xzgemm_blocks = only<kClass >= CpuClass::mc>(xzgemm_blocks),
        .xzgemm_copy_bn = only<kClass >= CpuClass::mc>(xzgemm_copy_bn),
        .xzgemm_copy_bt = only<kClass >= CpuClass::mc>(xzgemm_copy_bt),
        .xzgemm_copy_bc = only<kClass >= CpuClass::mc>(xzgemm_copy_bc),

        .xdgemm_blocks_mc = only < kClass == CpuClass::mc > (xdgemm_blocks_mc),
        .xdgemm_tile_htn = only < kClass == CpuClass::mc > (xdgemm_tile_htn),
        .xdgemm_tile_pb_htn = only < kClass == CpuClass::mc > (xdgemm_tile_pb_htn),
        .xdgemm_tile_pab = only < kClass == CpuClass::mc > (xdgemm_tile_pab),
        .xdgemm_blocks_htn = only < kClass == CpuClass::mc > (xdgemm_blocks_htn),
        .xdgemm_copy_an = only < kClass == CpuClass::mc > (xdgemm_copy_an),
        .xdgemm_copy_bn = only < kClass == CpuClass::mc > (xdgemm_copy_bn),
        .xdgemm_copy_bt = only < kClass == CpuClass::mc > (xdgemm_copy_bt),
        .xzgemm_tile_htn = only < kClass == CpuClass::mc > (xzgemm_tile_htn),
        .xzgemm_tile_pb_htn = only < kClass == CpuClass::mc > (xzgemm_tile_pb_htn),
        .xzgemm_tile_pab = only < kClass == CpuClass::mc > (xzgemm_tile_pab),
        .xzgemm_blocks_htn = only < kClass == CpuClass::mc > (xzgemm_blocks_htn),
        .xzgemm_copy_an = only < kClass == CpuClass::mc > (xzgemm_copy_an),
        .xzgemm_copy_ac = only < kClass == CpuClass::mc > (xzgemm_copy_ac),

        .dscattered_product = dscattered_product,
        .zscattered_product = zscattered_product,

        .dchase_diagonal = dchase_diagonal,
        .zchase_diagonal = zchase_diagonal,
        .dchase_column = dchase_column,
        .zchase_column = zchase_column,
        .dchase_row = dchase_row,
        .zchase_row = zchase_row,
        .drotations = drotations,
        .dreflect_rows = dreflect_rows,
        .zreflect_rows = zreflect_rows,
        .dreflect_columns = dreflect_columns,
        .zreflect_columns = zreflect_columns,
        .dsturm = dsturm,
        .dshifted_rows = dshifted_rows,
        .zshifted_rows = zshifted_rows,
        .dsylvester_leaf = dsylvester_leaf,
        .zsylvester_leaf = zsylvester_leaf,
        .dtbsm = dtbsm,
        .ztbsm = ztbsm,
    };
}

} // namespace

extern const KernelTable kernel_table;
constinit const KernelTable kernel_table = make_table();

} // namespace nxl::NXL_TARGET
