// The kernel slots of level 3.
#pragma once
#include "service/kernel_slot.hpp"

namespace nxl {

// Whole problems on one thread.
inline constinit KernelSlot<&KernelTable::xdgemm> xdgemm_slot;
inline constinit KernelSlot<&KernelTable::xzgemm> xzgemm_slot;
inline constinit KernelSlot<&KernelTable::dsymm> dsymm_slot;
inline constinit KernelSlot<&KernelTable::zsymm> zsymm_slot;
inline constinit KernelSlot<&KernelTable::zhemm> zhemm_slot;
inline constinit KernelSlot<&KernelTable::dsyrk> dsyrk_slot;
inline constinit KernelSlot<&KernelTable::zsyrk> zsyrk_slot;
inline constinit KernelSlot<&KernelTable::zherk> zherk_slot;
inline constinit KernelSlot<&KernelTable::dsyr2k> dsyr2k_slot;
inline constinit KernelSlot<&KernelTable::zsyr2k> zsyr2k_slot;
inline constinit KernelSlot<&KernelTable::zher2k> zher2k_slot;
inline constinit KernelSlot<&KernelTable::dtrmm> dtrmm_slot;
inline constinit KernelSlot<&KernelTable::ztrmm> ztrmm_slot;
inline constinit KernelSlot<&KernelTable::dtrsm> dtrsm_slot;
inline constinit KernelSlot<&KernelTable::ztrsm> ztrsm_slot;

// Pieces of GEMM: all classes, classes 2 and 3, class 2 alone.
inline constinit KernelSlot<&KernelTable::xdgemm_copy_at> xdgemm_copy_at_slot;
inline constinit KernelSlot<&KernelTable::xzgemm_copy_at> xzgemm_copy_at_slot;

inline constinit KernelSlot<&KernelTable::xdgemm_beta> xdgemm_beta_slot;
inline constinit KernelSlot<&KernelTable::xzgemm_beta> xzgemm_beta_slot;
inline constinit KernelSlot<&KernelTable::xdgemm_tile> xdgemm_tile_slot;
inline constinit KernelSlot<&KernelTable::xzgemm_tile> xzgemm_tile_slot;
inline constinit KernelSlot<&KernelTable::xdgemm_tile_pb> xdgemm_tile_pb_slot;
inline constinit KernelSlot<&KernelTable::xzgemm_tile_pb> xzgemm_tile_pb_slot;
inline constinit KernelSlot<&KernelTable::xzgemm_blocks> xzgemm_blocks_slot;
inline constinit KernelSlot<&KernelTable::xzgemm_copy_bn> xzgemm_copy_bn_slot;
inline constinit KernelSlot<&KernelTable::xzgemm_copy_bt> xzgemm_copy_bt_slot;
inline constinit KernelSlot<&KernelTable::xzgemm_copy_bc> xzgemm_copy_bc_slot;

inline constinit KernelSlot<&KernelTable::xdgemm_blocks_mc> xdgemm_blocks_mc_slot;
inline constinit KernelSlot<&KernelTable::xdgemm_copy_bn_mc> xdgemm_copy_bn_mc_slot;
inline constinit KernelSlot<&KernelTable::xdgemm_copy_bt_mc> xdgemm_copy_bt_mc_slot;
inline constinit KernelSlot<&KernelTable::xdgemm_tile_htn> xdgemm_tile_htn_slot;
inline constinit KernelSlot<&KernelTable::xdgemm_tile_pb_htn> xdgemm_tile_pb_htn_slot;
inline constinit KernelSlot<&KernelTable::xdgemm_tile_pab> xdgemm_tile_pab_slot;
inline constinit KernelSlot<&KernelTable::xdgemm_blocks_htn> xdgemm_blocks_htn_slot;
inline constinit KernelSlot<&KernelTable::xdgemm_copy_an> xdgemm_copy_an_slot;
inline constinit KernelSlot<&KernelTable::xdgemm_copy_bn_htn> xdgemm_copy_bn_htn_slot;
inline constinit KernelSlot<&KernelTable::xdgemm_copy_bt_htn> xdgemm_copy_bt_htn_slot;
inline constinit KernelSlot<&KernelTable::xzgemm_tile_htn> xzgemm_tile_htn_slot;
inline constinit KernelSlot<&KernelTable::xzgemm_tile_pb_htn> xzgemm_tile_pb_htn_slot;
inline constinit KernelSlot<&KernelTable::xzgemm_tile_pab> xzgemm_tile_pab_slot;
inline constinit KernelSlot<&KernelTable::xzgemm_blocks_htn> xzgemm_blocks_htn_slot;
inline constinit KernelSlot<&KernelTable::xzgemm_copy_an> xzgemm_copy_an_slot;
inline constinit KernelSlot<&KernelTable::xzgemm_copy_ac> xzgemm_copy_ac_slot;
inline constinit KernelSlot<&KernelTable::xzgemm_copy_bn_htn> xzgemm_copy_bn_htn_slot;
inline constinit KernelSlot<&KernelTable::xzgemm_copy_bt_htn> xzgemm_copy_bt_htn_slot;
inline constinit KernelSlot<&KernelTable::xzgemm_copy_bc_htn> xzgemm_copy_bc_htn_slot;

} // namespace nxl
