// The vector kernels of the target that is being compiled, as the table lists them.
#pragma once
#include "primitives/vectors/vector_table.hpp"

namespace nxl::NXL_TARGET {

vectors::WithValue add_value_d, sub_from_value_d, divide_value_d, scale_by_value_d;
vectors::WithValueC add_valuec_d, sub_from_valuec_d, divide_valuec_d, scale_by_valuec_d;
vectors::WithValueCd add_valuecd_d, sub_from_valuecd_d, divide_valuecd_d, scale_by_valuecd_d;
vectors::WithValueDc add_valuedc_d, sub_from_valuedc_d, divide_valuedc_d, scale_by_valuedc_d;

vectors::WithArrayCd add_veccd_d, sub_veccd_d, mul_veccd_d, div_veccd_d;
vectors::WithArrayDc sub_vecdc_d, div_vecdc_d;
vectors::WithArrayCc div_veccc_d, conj_mulcc_d;

vectors::FromArrayDd sgndd_d, sgn_mul_d, ceil_d, floor_d;
vectors::FromArrayCd sgncd_d, sgn_mulcd_d;
vectors::FromArrayDc sgndc_d, sgn_muldc_d;
vectors::FromArrayCc sgncc_d, sgn_mulc_d, reverse_d, flip_d, flip_conj_d, mul_i_d;

void rem_d(const double* x, const double* y, double* dst, i64 n);
void rem_val_d(const double* x, double value, double* dst, i64 n);
void cum_sum_delta_d(const double* src, double* dst, i64 n, i64 delta);
void cum_sum_deltac_d(const zcomplex* src, zcomplex* dst, i64 n, i64 delta);
double product_d(const double* src, i64 n);
i64 pack_by_mask_d(i64 n, const double* src, double* dst, const std::int32_t* mask);
i64 pack_by_mask_c(i64 n, const zcomplex* src, zcomplex* dst, const std::int32_t* mask);
void rampc_d(zcomplex* dst, i64 n, const zcomplex& offset, const zcomplex& step);

} // namespace nxl::NXL_TARGET
