// The kernel slots of LAPACK.
#pragma once
#include "service/kernel_slot.hpp"

namespace nxl {

inline constinit KernelSlot<&KernelTable::dgetrf_leaf> dgetrf_leaf_slot;
inline constinit KernelSlot<&KernelTable::zgetrf_leaf> zgetrf_leaf_slot;
inline constinit KernelSlot<&KernelTable::dgetrf_update> dgetrf_update_slot;
inline constinit KernelSlot<&KernelTable::zgetrf_update> zgetrf_update_slot;
inline constinit KernelSlot<&KernelTable::xdpotf2_u> xdpotf2_u_slot;
inline constinit KernelSlot<&KernelTable::xdpotf2_l> xdpotf2_l_slot;
inline constinit KernelSlot<&KernelTable::xzpotf2_u> xzpotf2_u_slot;
inline constinit KernelSlot<&KernelTable::xzpotf2_l> xzpotf2_l_slot;
inline constinit KernelSlot<&KernelTable::dtrti2> dtrti2_slot;
inline constinit KernelSlot<&KernelTable::ztrti2> ztrti2_slot;
inline constinit KernelSlot<&KernelTable::dlauu2> dlauu2_slot;
inline constinit KernelSlot<&KernelTable::zlauu2> zlauu2_slot;

} // namespace nxl
