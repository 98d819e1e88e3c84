// The vector kernels of this target.
#include "primitives/vectors/kernels.hpp"

namespace nxl::NXL_TARGET {

extern const VectorTable vector_table;
const VectorTable vector_table = {
    .add_value_d = add_value_d,
    .sub_from_value_d = sub_from_value_d,
    .divide_value_d = divide_value_d,
    .scale_by_value_d = scale_by_value_d,
    .add_valuec_d = add_valuec_d,
    .sub_from_valuec_d = sub_from_valuec_d,
    .divide_valuec_d = divide_valuec_d,
    .scale_by_valuec_d = scale_by_valuec_d,
    .add_valuecd_d = add_valuecd_d,
    .sub_from_valuecd_d = sub_from_valuecd_d,
    .divide_valuecd_d = divide_valuecd_d,
    .scale_by_valuecd_d = scale_by_valuecd_d,
    .add_valuedc_d = add_valuedc_d,
    .sub_from_valuedc_d = sub_from_valuedc_d,
    .divide_valuedc_d = divide_valuedc_d,
    .scale_by_valuedc_d = scale_by_valuedc_d,
    .add_veccd_d = add_veccd_d,
    .sub_veccd_d = sub_veccd_d,
    .mul_veccd_d = mul_veccd_d,
    .div_veccd_d = div_veccd_d,
    .sub_vecdc_d = sub_vecdc_d,
    .div_vecdc_d = div_vecdc_d,
    .div_veccc_d = div_veccc_d,
    .conj_mulcc_d = conj_mulcc_d,
    .sgndd_d = sgndd_d,
    .sgn_mul_d = sgn_mul_d,
    .ceil_d = ceil_d,
    .floor_d = floor_d,
    .sgncd_d = sgncd_d,
    .sgn_mulcd_d = sgn_mulcd_d,
    .sgndc_d = sgndc_d,
    .sgn_muldc_d = sgn_muldc_d,
    .sgncc_d = sgncc_d,
    .sgn_mulc_d = sgn_mulc_d,
    .reverse_d = reverse_d,
    .flip_d = flip_d,
    .flip_conj_d = flip_conj_d,
    .mul_i_d = mul_i_d,
    .rem_d = rem_d,
    .rem_val_d = rem_val_d,
    .cum_sum_delta_d = cum_sum_delta_d,
    .cum_sum_deltac_d = cum_sum_deltac_d,
    .product_d = product_d,
    .rampc_d = rampc_d,
};

} // namespace nxl::NXL_TARGET
