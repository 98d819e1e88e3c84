// Entries of the vector primitives: arguments by value, lengths unsigned, complex scalars by reference.
#include "nxl.h"
#include "primitives/vectors/sequential.hpp"
#include "primitives/vectors/slots.hpp"
#include "service/export.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT void AddValue_d(const double* src, double* dst, double value, uint32_t n) noexcept {
    slot<&VectorTable::add_value_d>(src, dst, value, n);
}

NXL_EXPORT void AddValuec_d(const nxl_z* src, nxl_z* dst, const nxl_z* value, uint32_t n) noexcept {
    slot<&VectorTable::add_valuec_d>(src, dst, *value, n);
}

NXL_EXPORT void AddValuecd_d(const nxl_z* src, nxl_z* dst, double value, uint32_t n) noexcept {
    slot<&VectorTable::add_valuecd_d>(src, dst, value, n);
}

NXL_EXPORT void AddValuedc_d(const double* src, nxl_z* dst, const nxl_z* value, uint32_t n) noexcept {
    slot<&VectorTable::add_valuedc_d>(src, dst, *value, n);
}

NXL_EXPORT void SubFromValue_d(const double* src, double* dst, double value, uint32_t n) noexcept {
    slot<&VectorTable::sub_from_value_d>(src, dst, value, n);
}

NXL_EXPORT void SubFromValuec_d(const nxl_z* src, nxl_z* dst, const nxl_z* value, uint32_t n) noexcept {
    slot<&VectorTable::sub_from_valuec_d>(src, dst, *value, n);
}

NXL_EXPORT void SubFromValuecd_d(const nxl_z* src, nxl_z* dst, double value, uint32_t n) noexcept {
    slot<&VectorTable::sub_from_valuecd_d>(src, dst, value, n);
}

NXL_EXPORT void SubFromValuedc_d(const double* src, nxl_z* dst, const nxl_z* value, uint32_t n) noexcept {
    slot<&VectorTable::sub_from_valuedc_d>(src, dst, *value, n);
}

NXL_EXPORT void DivideValue_d(const double* src, double* dst, double value, uint32_t n) noexcept {
    slot<&VectorTable::divide_value_d>(src, dst, value, n);
}

NXL_EXPORT void DivideValuec_d(const nxl_z* src, nxl_z* dst, const nxl_z* value, uint32_t n) noexcept {
    slot<&VectorTable::divide_valuec_d>(src, dst, *value, n);
}

NXL_EXPORT void DivideValuecd_d(const nxl_z* src, nxl_z* dst, double value, uint32_t n) noexcept {
    slot<&VectorTable::divide_valuecd_d>(src, dst, value, n);
}

NXL_EXPORT void DivideValuedc_d(const double* src, nxl_z* dst, const nxl_z* value, uint32_t n) noexcept {
    slot<&VectorTable::divide_valuedc_d>(src, dst, *value, n);
}

NXL_EXPORT void ScaleByValue_d(const double* src, double* dst, double value, uint32_t n) noexcept {
    slot<&VectorTable::scale_by_value_d>(src, dst, value, n);
}

NXL_EXPORT void ScaleByValuec_d(const nxl_z* src, nxl_z* dst, const nxl_z* value, uint32_t n) noexcept {
    slot<&VectorTable::scale_by_valuec_d>(src, dst, *value, n);
}

NXL_EXPORT void ScaleByValuecd_d(const nxl_z* src, nxl_z* dst, double value, uint32_t n) noexcept {
    slot<&VectorTable::scale_by_valuecd_d>(src, dst, value, n);
}

NXL_EXPORT void ScaleByValuedc_d(const double* src, nxl_z* dst, const nxl_z* value, uint32_t n) noexcept {
    slot<&VectorTable::scale_by_valuedc_d>(src, dst, *value, n);
}

NXL_EXPORT void AddVeccd_d(const nxl_z* a, const double* b, nxl_z* dst, uint32_t n) noexcept {
    slot<&VectorTable::add_veccd_d>(a, b, dst, n);
}

NXL_EXPORT void SubVeccd_d(const nxl_z* a, const double* b, nxl_z* dst, uint32_t n) noexcept {
    slot<&VectorTable::sub_veccd_d>(a, b, dst, n);
}

NXL_EXPORT void SubVecdc_d(const double* a, const nxl_z* b, nxl_z* dst, uint32_t n) noexcept {
    slot<&VectorTable::sub_vecdc_d>(a, b, dst, n);
}

NXL_EXPORT void MulVeccd_d(const nxl_z* a, const double* b, nxl_z* dst, uint32_t n) noexcept {
    slot<&VectorTable::mul_veccd_d>(a, b, dst, n);
}

NXL_EXPORT void DivVeccc_d(const nxl_z* a, const nxl_z* b, nxl_z* dst, uint32_t n) noexcept {
    slot<&VectorTable::div_veccc_d>(a, b, dst, n);
}

NXL_EXPORT void DivVeccd_d(const nxl_z* a, const double* b, nxl_z* dst, uint32_t n) noexcept {
    slot<&VectorTable::div_veccd_d>(a, b, dst, n);
}

NXL_EXPORT void DivVecdc_d(const double* a, const nxl_z* b, nxl_z* dst, uint32_t n) noexcept {
    slot<&VectorTable::div_vecdc_d>(a, b, dst, n);
}

NXL_EXPORT void ConjMulcc_d(const nxl_z* a, const nxl_z* b, nxl_z* dst, uint32_t n) noexcept {
    slot<&VectorTable::conj_mulcc_d>(a, b, dst, n);
}

NXL_EXPORT void Sgndd_d(const double* src, double* dst, uint32_t n) noexcept {
    slot<&VectorTable::sgndd_d>(src, dst, n);
}

NXL_EXPORT void Sgncd_d(const nxl_z* src, double* dst, uint32_t n) noexcept {
    slot<&VectorTable::sgncd_d>(src, dst, n);
}

NXL_EXPORT void Sgndc_d(const double* src, nxl_z* dst, uint32_t n) noexcept {
    slot<&VectorTable::sgndc_d>(src, dst, n);
}

NXL_EXPORT void Sgncc_d(const nxl_z* src, nxl_z* dst, uint32_t n) noexcept { slot<&VectorTable::sgncc_d>(src, dst, n); }

NXL_EXPORT void SgnMul_d(const double* src, double* dst, uint32_t n) noexcept {
    slot<&VectorTable::sgn_mul_d>(src, dst, n);
}

NXL_EXPORT void SgnMulc_d(const nxl_z* src, nxl_z* dst, uint32_t n) noexcept {
    slot<&VectorTable::sgn_mulc_d>(src, dst, n);
}

NXL_EXPORT void SgnMulcd_d(const nxl_z* src, double* dst, uint32_t n) noexcept {
    slot<&VectorTable::sgn_mulcd_d>(src, dst, n);
}

NXL_EXPORT void SgnMuldc_d(const double* src, nxl_z* dst, uint32_t n) noexcept {
    slot<&VectorTable::sgn_muldc_d>(src, dst, n);
}

NXL_EXPORT void Rem_d(const double* x, const double* y, double* dst, uint32_t n) noexcept {
    slot<&VectorTable::rem_d>(x, y, dst, n);
}

NXL_EXPORT void RemVal_d(const double* x, double value, double* dst, uint32_t n) noexcept {
    slot<&VectorTable::rem_val_d>(x, value, dst, n);
}

NXL_EXPORT void Ceil_d(const double* src, double* dst, uint32_t n) noexcept { slot<&VectorTable::ceil_d>(src, dst, n); }

NXL_EXPORT void Floor_d(const double* src, double* dst, uint32_t n) noexcept {
    slot<&VectorTable::floor_d>(src, dst, n);
}

NXL_EXPORT void CumSum_d(const double* src, double* dst, uint32_t n) noexcept {
    slot<&VectorTable::cum_sum_delta_d>(src, dst, n, 1);
}

NXL_EXPORT void CumSumc_d(const nxl_z* src, nxl_z* dst, uint32_t n) noexcept {
    slot<&VectorTable::cum_sum_deltac_d>(src, dst, n, 1);
}

NXL_EXPORT void CumSumDelta_d(const double* src, double* dst, uint32_t n, uint32_t delta) noexcept {
    slot<&VectorTable::cum_sum_delta_d>(src, dst, n, delta);
}

NXL_EXPORT void CumSumDeltac_d(const nxl_z* src, nxl_z* dst, uint32_t n, uint32_t delta) noexcept {
    slot<&VectorTable::cum_sum_deltac_d>(src, dst, n, delta);
}

NXL_EXPORT double Product_d(const double* src, uint32_t n) noexcept { return slot<&VectorTable::product_d>(src, n); }

NXL_EXPORT void Productc_d(const nxl_z* src, nxl_z* out, uint32_t n) noexcept { *out = nxl_productc(src, n); }

NXL_EXPORT void Reverse_d(const nxl_z* src, nxl_z* dst, uint32_t n) noexcept {
    slot<&VectorTable::reverse_d>(src, dst, n);
}

NXL_EXPORT void Flip_d(const nxl_z* src, nxl_z* dst, uint32_t n) noexcept { slot<&VectorTable::flip_d>(src, dst, n); }

NXL_EXPORT void FlipConj_d(const nxl_z* src, nxl_z* dst, uint32_t n) noexcept {
    slot<&VectorTable::flip_conj_d>(src, dst, n);
}

NXL_EXPORT void MulI_d(const nxl_z* src, nxl_z* dst, uint32_t n) noexcept { slot<&VectorTable::mul_i_d>(src, dst, n); }

NXL_EXPORT void Rampc_d(nxl_z* dst, uint32_t n, const nxl_z* offset, const nxl_z* step) noexcept {
    slot<&VectorTable::rampc_d>(dst, n, *offset, *step);
}

NXL_EXPORT uint32_t PackByMask_d(uint32_t n, const double* src, double* dst, const int32_t* mask) noexcept {
    return static_cast<uint32_t>(slot<&VectorTable::pack_by_mask_d>(n, src, dst, mask));
}

NXL_EXPORT uint32_t PackByMaskc_d(uint32_t n, const nxl_z* src, nxl_z* dst, const int32_t* mask) noexcept {
    return static_cast<uint32_t>(slot<&VectorTable::pack_by_mask_c>(n, src, dst, mask));
}

NXL_EXPORT void Powc_d(const nxl_z* a, const nxl_z* b, nxl_z* dst, uint32_t n) noexcept { nxl_powc(a, b, dst, n); }

NXL_EXPORT void GetValFromPtr_d(const double* p, double* out) noexcept { *out = *p; }

NXL_EXPORT double GetValFromPtrf_d(const double* p) noexcept { return *p; }

NXL_EXPORT void GetValcFromPtr_d(const nxl_z* p, nxl_z* out) noexcept { *out = *p; }

NXL_EXPORT void GetValIFromPtr(const int32_t* p, int32_t* out) noexcept { *out = *p; }

NXL_EXPORT void SetValToPtr_d(double* p, double value) noexcept { *p = value; }

NXL_EXPORT void SetValcToPtr_d(nxl_z* p, const nxl_z* value) noexcept { *p = *value; }

NXL_EXPORT void SetValIToPtr(int32_t* p, int32_t value) noexcept { *p = value; }

} // extern "C"
