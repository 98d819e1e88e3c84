// The slots of the vector kernels, bound by vector width.
#pragma once
#include "primitives/vectors/vector_table.hpp"
#include "service/kernel_slot.hpp"

namespace nxl {

template <> const VectorTable& bound_table();

inline constinit KernelSlot<&VectorTable::add_value_d> add_value_d_slot;
inline constinit KernelSlot<&VectorTable::sub_from_value_d> sub_from_value_d_slot;
inline constinit KernelSlot<&VectorTable::divide_value_d> divide_value_d_slot;
inline constinit KernelSlot<&VectorTable::scale_by_value_d> scale_by_value_d_slot;
inline constinit KernelSlot<&VectorTable::add_valuec_d> add_valuec_d_slot;
inline constinit KernelSlot<&VectorTable::sub_from_valuec_d> sub_from_valuec_d_slot;
inline constinit KernelSlot<&VectorTable::divide_valuec_d> divide_valuec_d_slot;
inline constinit KernelSlot<&VectorTable::scale_by_valuec_d> scale_by_valuec_d_slot;
inline constinit KernelSlot<&VectorTable::add_valuecd_d> add_valuecd_d_slot;
inline constinit KernelSlot<&VectorTable::sub_from_valuecd_d> sub_from_valuecd_d_slot;
inline constinit KernelSlot<&VectorTable::divide_valuecd_d> divide_valuecd_d_slot;
inline constinit KernelSlot<&VectorTable::scale_by_valuecd_d> scale_by_valuecd_d_slot;
inline constinit KernelSlot<&VectorTable::add_valuedc_d> add_valuedc_d_slot;
inline constinit KernelSlot<&VectorTable::sub_from_valuedc_d> sub_from_valuedc_d_slot;
inline constinit KernelSlot<&VectorTable::divide_valuedc_d> divide_valuedc_d_slot;
inline constinit KernelSlot<&VectorTable::scale_by_valuedc_d> scale_by_valuedc_d_slot;
inline constinit KernelSlot<&VectorTable::add_veccd_d> add_veccd_d_slot;
inline constinit KernelSlot<&VectorTable::sub_veccd_d> sub_veccd_d_slot;
inline constinit KernelSlot<&VectorTable::mul_veccd_d> mul_veccd_d_slot;
inline constinit KernelSlot<&VectorTable::div_veccd_d> div_veccd_d_slot;
inline constinit KernelSlot<&VectorTable::sub_vecdc_d> sub_vecdc_d_slot;
inline constinit KernelSlot<&VectorTable::div_vecdc_d> div_vecdc_d_slot;
inline constinit KernelSlot<&VectorTable::div_veccc_d> div_veccc_d_slot;
inline constinit KernelSlot<&VectorTable::conj_mulcc_d> conj_mulcc_d_slot;
inline constinit KernelSlot<&VectorTable::sgndd_d> sgndd_d_slot;
inline constinit KernelSlot<&VectorTable::sgn_mul_d> sgn_mul_d_slot;
inline constinit KernelSlot<&VectorTable::ceil_d> ceil_d_slot;
inline constinit KernelSlot<&VectorTable::floor_d> floor_d_slot;
inline constinit KernelSlot<&VectorTable::sgncd_d> sgncd_d_slot;
inline constinit KernelSlot<&VectorTable::sgn_mulcd_d> sgn_mulcd_d_slot;
inline constinit KernelSlot<&VectorTable::sgndc_d> sgndc_d_slot;
inline constinit KernelSlot<&VectorTable::sgn_muldc_d> sgn_muldc_d_slot;
inline constinit KernelSlot<&VectorTable::sgncc_d> sgncc_d_slot;
inline constinit KernelSlot<&VectorTable::sgn_mulc_d> sgn_mulc_d_slot;
inline constinit KernelSlot<&VectorTable::reverse_d> reverse_d_slot;
inline constinit KernelSlot<&VectorTable::flip_d> flip_d_slot;
inline constinit KernelSlot<&VectorTable::flip_conj_d> flip_conj_d_slot;
inline constinit KernelSlot<&VectorTable::mul_i_d> mul_i_d_slot;
inline constinit KernelSlot<&VectorTable::rem_d> rem_d_slot;
inline constinit KernelSlot<&VectorTable::rem_val_d> rem_val_d_slot;
inline constinit KernelSlot<&VectorTable::cum_sum_delta_d> cum_sum_delta_d_slot;
inline constinit KernelSlot<&VectorTable::cum_sum_deltac_d> cum_sum_deltac_d_slot;
inline constinit KernelSlot<&VectorTable::product_d> product_d_slot;
inline constinit KernelSlot<&VectorTable::pack_by_mask_d> pack_by_mask_d_slot;
inline constinit KernelSlot<&VectorTable::pack_by_mask_c> pack_by_mask_c_slot;
inline constinit KernelSlot<&VectorTable::rampc_d> rampc_d_slot;

} // namespace nxl
