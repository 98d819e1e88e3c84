// The slots of the pack family, bound by its own processor class.
#pragma once
#include "primitives/pack/pack_table.hpp"
#include "service/kernel_slot.hpp"

namespace nxl {

template <> const PackTable& bound_table();

inline constinit KernelSlot<&PackTable::strided_d> pack_strided_d_slot;
inline constinit KernelSlot<&PackTable::pack_indexed_d> pack_indexed_d_slot;
inline constinit KernelSlot<&PackTable::pack_masked_d> pack_masked_d_slot;
inline constinit KernelSlot<&PackTable::unpack_indexed_d> unpack_indexed_d_slot;
inline constinit KernelSlot<&PackTable::unpack_masked_d> unpack_masked_d_slot;

} // namespace nxl
