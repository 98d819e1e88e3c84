// The kernel slots of level 2.
#pragma once
#include "service/kernel_slot.hpp"

namespace nxl {

inline constinit KernelSlot<&KernelTable::dgemv> dgemv_slot;
inline constinit KernelSlot<&KernelTable::dger> dger_slot;
inline constinit KernelSlot<&KernelTable::dsymv> dsymv_slot;
inline constinit KernelSlot<&KernelTable::dsyr> dsyr_slot;
inline constinit KernelSlot<&KernelTable::dsyr2> dsyr2_slot;
inline constinit KernelSlot<&KernelTable::dtrmv> dtrmv_slot;
inline constinit KernelSlot<&KernelTable::dtrsv> dtrsv_slot;
inline constinit KernelSlot<&KernelTable::zgemv> zgemv_slot;
inline constinit KernelSlot<&KernelTable::zgerc> zgerc_slot;
inline constinit KernelSlot<&KernelTable::zgeru> zgeru_slot;
inline constinit KernelSlot<&KernelTable::zhemv> zhemv_slot;
inline constinit KernelSlot<&KernelTable::zher> zher_slot;
inline constinit KernelSlot<&KernelTable::zher2> zher2_slot;
inline constinit KernelSlot<&KernelTable::zsyr> zsyr_slot;
inline constinit KernelSlot<&KernelTable::ztrmv> ztrmv_slot;
inline constinit KernelSlot<&KernelTable::ztrsv> ztrsv_slot;

} // namespace nxl
