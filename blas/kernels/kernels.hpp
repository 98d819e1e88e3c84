// The kernels of a target, declared with the signatures of the table.
#pragma once
#include "blas/kernels/target.hpp"

namespace nxl::NXL_TARGET {

// A function declared by the type of its member, so that a signature is written once: in the table. A definition that
// differs is another function, and the link then lacks this one.
template <class Pointer> struct Pointee;
template <class Fn> struct Pointee<Fn*> {
    using type = Fn;
};
template <class Pointer> using Kernel = typename Pointee<Pointer>::type;

// Level 1, real.
Kernel<decltype(KernelTable::dasum)> dasum;
Kernel<decltype(KernelTable::daxpy)> daxpy;
Kernel<decltype(KernelTable::dcopy)> dcopy;
Kernel<decltype(KernelTable::ddot)> ddot;
Kernel<decltype(KernelTable::dnrm2)> dnrm2;
Kernel<decltype(KernelTable::drot)> drot;
Kernel<decltype(KernelTable::drotg)> drotg;
Kernel<decltype(KernelTable::drotm)> drotm;
Kernel<decltype(KernelTable::drotmg)> drotmg;
Kernel<decltype(KernelTable::dscal)> dscal;
Kernel<decltype(KernelTable::dswap)> dswap;
Kernel<decltype(KernelTable::idamax)> idamax;
Kernel<decltype(KernelTable::idamin)> idamin;

// Level 1, complex.
Kernel<decltype(KernelTable::dzasum)> dzasum;
Kernel<decltype(KernelTable::dznrm2)> dznrm2;
Kernel<decltype(KernelTable::izamax)> izamax;
Kernel<decltype(KernelTable::izamin)> izamin;
Kernel<decltype(KernelTable::zaxpy)> zaxpy;
Kernel<decltype(KernelTable::zcopy)> zcopy;
Kernel<decltype(KernelTable::zdotc)> zdotc;
Kernel<decltype(KernelTable::zdotu)> zdotu;
Kernel<decltype(KernelTable::zdrot)> zdrot;
Kernel<decltype(KernelTable::zdscal)> zdscal;
Kernel<decltype(KernelTable::zrot)> zrot;
Kernel<decltype(KernelTable::zrotg)> zrotg;
Kernel<decltype(KernelTable::zscal)> zscal;
Kernel<decltype(KernelTable::zswap)> zswap;

// Sparse level 1.
Kernel<decltype(KernelTable::daxpyi)> daxpyi;
Kernel<decltype(KernelTable::ddoti)> ddoti;
Kernel<decltype(KernelTable::dgthr)> dgthr;
Kernel<decltype(KernelTable::dsctr)> dsctr;
Kernel<decltype(KernelTable::zaxpyi)> zaxpyi;
Kernel<decltype(KernelTable::zdotci)> zdotci;
Kernel<decltype(KernelTable::zdotui)> zdotui;
Kernel<decltype(KernelTable::zgthr)> zgthr;
Kernel<decltype(KernelTable::zsctr)> zsctr;
Kernel<decltype(KernelTable::dscattered_product)> dscattered_product;
Kernel<decltype(KernelTable::zscattered_product)> zscattered_product;

// Level 2.
Kernel<decltype(KernelTable::dgemv)> dgemv;
Kernel<decltype(KernelTable::dger)> dger;
Kernel<decltype(KernelTable::dsymv)> dsymv;
Kernel<decltype(KernelTable::dsyr)> dsyr;
Kernel<decltype(KernelTable::dsyr2)> dsyr2;
Kernel<decltype(KernelTable::dtbsv)> dtbsv;
Kernel<decltype(KernelTable::dtrmv)> dtrmv;
Kernel<decltype(KernelTable::dtrsv)> dtrsv;
Kernel<decltype(KernelTable::zgemv)> zgemv;
Kernel<decltype(KernelTable::zgerc)> zgerc;
Kernel<decltype(KernelTable::zgeru)> zgeru;
Kernel<decltype(KernelTable::zhemv)> zhemv;
Kernel<decltype(KernelTable::zher)> zher;
Kernel<decltype(KernelTable::zher2)> zher2;
Kernel<decltype(KernelTable::zsymv)> zsymv;
Kernel<decltype(KernelTable::zsyr)> zsyr;
Kernel<decltype(KernelTable::ztbsv)> ztbsv;
Kernel<decltype(KernelTable::ztrmv)> ztrmv;
Kernel<decltype(KernelTable::ztrsv)> ztrsv;

// Level 3: whole problems on one thread.
Kernel<decltype(KernelTable::xdgemm)> xdgemm;
Kernel<decltype(KernelTable::xzgemm)> xzgemm;
Kernel<decltype(KernelTable::dsymm)> dsymm;
Kernel<decltype(KernelTable::zsymm)> zsymm;
Kernel<decltype(KernelTable::zhemm)> zhemm;
Kernel<decltype(KernelTable::dsyrk)> dsyrk;
Kernel<decltype(KernelTable::zsyrk)> zsyrk;
Kernel<decltype(KernelTable::zherk)> zherk;
Kernel<decltype(KernelTable::dsyr2k)> dsyr2k;
Kernel<decltype(KernelTable::zsyr2k)> zsyr2k;
Kernel<decltype(KernelTable::zher2k)> zher2k;
Kernel<decltype(KernelTable::dgemmt)> dgemmt;
Kernel<decltype(KernelTable::zgemmt)> zgemmt;
Kernel<decltype(KernelTable::dtbsm)> dtbsm;
Kernel<decltype(KernelTable::ztbsm)> ztbsm;
Kernel<decltype(KernelTable::dtrmm)> dtrmm;
Kernel<decltype(KernelTable::ztrmm)> ztrmm;
Kernel<decltype(KernelTable::dtrsm)> dtrsm;
Kernel<decltype(KernelTable::ztrsm)> ztrsm;

// LAPACK: unblocked pieces.
Kernel<decltype(KernelTable::dgetrf_leaf)> dgetrf_leaf;
Kernel<decltype(KernelTable::zgetrf_leaf)> zgetrf_leaf;
Kernel<decltype(KernelTable::dgetrf_update)> dgetrf_update;
Kernel<decltype(KernelTable::zgetrf_update)> zgetrf_update;
Kernel<decltype(KernelTable::dreflect_panel)> dreflect_panel;
Kernel<decltype(KernelTable::zreflect_panel)> zreflect_panel;
Kernel<decltype(KernelTable::xdpotf2_u)> xdpotf2_u;
Kernel<decltype(KernelTable::xdpotf2_l)> xdpotf2_l;
Kernel<decltype(KernelTable::xzpotf2_u)> xzpotf2_u;
Kernel<decltype(KernelTable::xzpotf2_l)> xzpotf2_l;
Kernel<decltype(KernelTable::dtrti2)> dtrti2;
Kernel<decltype(KernelTable::ztrti2)> ztrti2;
Kernel<decltype(KernelTable::dlauu2)> dlauu2;
Kernel<decltype(KernelTable::zlauu2)> zlauu2;
Kernel<decltype(KernelTable::dchase_diagonal)> dchase_diagonal;
Kernel<decltype(KernelTable::zchase_diagonal)> zchase_diagonal;
Kernel<decltype(KernelTable::dchase_column)> dchase_column;
Kernel<decltype(KernelTable::zchase_column)> zchase_column;
Kernel<decltype(KernelTable::dchase_row)> dchase_row;
Kernel<decltype(KernelTable::zchase_row)> zchase_row;
Kernel<decltype(KernelTable::drotations)> drotations;
Kernel<decltype(KernelTable::dreflect_rows)> dreflect_rows;
Kernel<decltype(KernelTable::zreflect_rows)> zreflect_rows;
Kernel<decltype(KernelTable::dreflect_columns)> dreflect_columns;
Kernel<decltype(KernelTable::zreflect_columns)> zreflect_columns;
Kernel<decltype(KernelTable::dsturm)> dsturm;
Kernel<decltype(KernelTable::dshifted_rows)> dshifted_rows;
Kernel<decltype(KernelTable::zshifted_rows)> zshifted_rows;
Kernel<decltype(KernelTable::dsylvester_leaf)> dsylvester_leaf;
Kernel<decltype(KernelTable::zsylvester_leaf)> zsylvester_leaf;
// Pieces of the matrix product, of all classes.
Kernel<decltype(KernelTable::xdgemm_copy_at)> xdgemm_copy_at;
Kernel<decltype(KernelTable::xzgemm_copy_at)> xzgemm_copy_at;

// Pieces of classes 2 and 3.
Kernel<decltype(KernelTable::xdgemm_beta)> xdgemm_beta;
Kernel<decltype(KernelTable::xzgemm_beta)> xzgemm_beta;
Kernel<decltype(KernelTable::xdgemm_tile)> xdgemm_tile;
Kernel<decltype(KernelTable::xzgemm_tile)> xzgemm_tile;
Kernel<decltype(KernelTable::xdgemm_tile_pb)> xdgemm_tile_pb;
Kernel<decltype(KernelTable::xzgemm_tile_pb)> xzgemm_tile_pb;
Kernel<decltype(KernelTable::xzgemm_blocks)> xzgemm_blocks;
Kernel<decltype(KernelTable::xzgemm_copy_bn)> xzgemm_copy_bn;
Kernel<decltype(KernelTable::xzgemm_copy_bt)> xzgemm_copy_bt;
Kernel<decltype(KernelTable::xzgemm_copy_bc)> xzgemm_copy_bc;

// Pieces of class 2 alone.
Kernel<decltype(KernelTable::xdgemm_blocks_mc)> xdgemm_blocks_mc;
Kernel<decltype(KernelTable::xdgemm_tile_htn)> xdgemm_tile_htn;
Kernel<decltype(KernelTable::xdgemm_tile_pb_htn)> xdgemm_tile_pb_htn;
Kernel<decltype(KernelTable::xdgemm_tile_pab)> xdgemm_tile_pab;
Kernel<decltype(KernelTable::xdgemm_blocks_htn)> xdgemm_blocks_htn;
Kernel<decltype(KernelTable::xdgemm_copy_an)> xdgemm_copy_an;
Kernel<decltype(KernelTable::xdgemm_copy_bn)> xdgemm_copy_bn;
Kernel<decltype(KernelTable::xdgemm_copy_bt)> xdgemm_copy_bt;
Kernel<decltype(KernelTable::xzgemm_tile_htn)> xzgemm_tile_htn;
Kernel<decltype(KernelTable::xzgemm_tile_pb_htn)> xzgemm_tile_pb_htn;
Kernel<decltype(KernelTable::xzgemm_tile_pab)> xzgemm_tile_pab;
Kernel<decltype(KernelTable::xzgemm_blocks_htn)> xzgemm_blocks_htn;
Kernel<decltype(KernelTable::xzgemm_copy_an)> xzgemm_copy_an;
Kernel<decltype(KernelTable::xzgemm_copy_ac)> xzgemm_copy_ac;

} // namespace nxl::NXL_TARGET
