// The kernel slots of level 1 and sparse level 1.
#pragma once
#include "service/kernel_slot.hpp"

namespace nxl {

inline constinit KernelSlot<&KernelTable::dasum> dasum_slot;
inline constinit KernelSlot<&KernelTable::daxpy> daxpy_slot;
inline constinit KernelSlot<&KernelTable::dcopy> dcopy_slot;
inline constinit KernelSlot<&KernelTable::ddot> ddot_slot;
inline constinit KernelSlot<&KernelTable::dnrm2> dnrm2_slot;
inline constinit KernelSlot<&KernelTable::drot> drot_slot;
inline constinit KernelSlot<&KernelTable::drotg> drotg_slot;
inline constinit KernelSlot<&KernelTable::drotm> drotm_slot;
inline constinit KernelSlot<&KernelTable::drotmg> drotmg_slot;
inline constinit KernelSlot<&KernelTable::dscal> dscal_slot;
inline constinit KernelSlot<&KernelTable::dswap> dswap_slot;
inline constinit KernelSlot<&KernelTable::idamax> idamax_slot;
inline constinit KernelSlot<&KernelTable::idamin> idamin_slot;

inline constinit KernelSlot<&KernelTable::dzasum> dzasum_slot;
inline constinit KernelSlot<&KernelTable::dznrm2> dznrm2_slot;
inline constinit KernelSlot<&KernelTable::izamax> izamax_slot;
inline constinit KernelSlot<&KernelTable::izamin> izamin_slot;
inline constinit KernelSlot<&KernelTable::zaxpy> zaxpy_slot;
inline constinit KernelSlot<&KernelTable::zcopy> zcopy_slot;
inline constinit KernelSlot<&KernelTable::zdotc> zdotc_slot;
inline constinit KernelSlot<&KernelTable::zdotu> zdotu_slot;
inline constinit KernelSlot<&KernelTable::zdrot> zdrot_slot;
inline constinit KernelSlot<&KernelTable::zdscal> zdscal_slot;
inline constinit KernelSlot<&KernelTable::zrot> zrot_slot;
inline constinit KernelSlot<&KernelTable::zrotg> zrotg_slot;
inline constinit KernelSlot<&KernelTable::zscal> zscal_slot;
inline constinit KernelSlot<&KernelTable::zswap> zswap_slot;

inline constinit KernelSlot<&KernelTable::daxpyi> daxpyi_slot;
inline constinit KernelSlot<&KernelTable::ddoti> ddoti_slot;
inline constinit KernelSlot<&KernelTable::dgthr> dgthr_slot;
inline constinit KernelSlot<&KernelTable::dsctr> dsctr_slot;
inline constinit KernelSlot<&KernelTable::zaxpyi> zaxpyi_slot;
inline constinit KernelSlot<&KernelTable::zdotci> zdotci_slot;
inline constinit KernelSlot<&KernelTable::zdotui> zdotui_slot;
inline constinit KernelSlot<&KernelTable::zgthr> zgthr_slot;
inline constinit KernelSlot<&KernelTable::zsctr> zsctr_slot;

} // namespace nxl
