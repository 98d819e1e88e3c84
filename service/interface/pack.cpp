// Entries of the pack family: real arrays with everything by reference, complex arrays with lengths and increments by
// value.
#include "primitives/pack/pack.hpp"
#include "nxl.h"
#include "primitives/pack/pack_loops.hpp"
#include "primitives/vectors/slots.hpp"
#include "service/export.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT void vdpacki(const int* n, const double* a, const int* incra, double* y) noexcept {
    slot<&PackTable::strided_d>(*n, a, *incra, y, 1);
}
NXL_EXPORT void vdpackv(const int* n, const double* a, const int* ia, double* y) noexcept {
    slot<&PackTable::pack_indexed_d>(*n, a, ia, y);
}
NXL_EXPORT void vdpackm(const int* n, const double* a, const int* ma, double* y) noexcept {
    slot<&PackTable::pack_masked_d>(*n, a, ma, y);
}
NXL_EXPORT void vdunpacki(const int* n, const double* a, double* y, const int* incry) noexcept {
    slot<&PackTable::strided_d>(*n, a, 1, y, *incry);
}
NXL_EXPORT void vdunpackv(const int* n, const double* a, double* y, const int* iy) noexcept {
    slot<&PackTable::unpack_indexed_d>(*n, a, y, iy);
}
NXL_EXPORT void vdunpackm(const int* n, const double* a, double* y, const int* my) noexcept {
    slot<&PackTable::unpack_masked_d>(*n, a, y, my);
}

NXL_EXPORT void vdpackic_d(uint32_t n, const nxl_z* a, int32_t incra, nxl_z* y) noexcept {
    copy_strided<1>(n, a, incra, y, 1);
}
NXL_EXPORT void vdpackvc_d(uint32_t n, const nxl_z* a, const int32_t* ia, nxl_z* y) noexcept {
    pack_indexed<1>(n, a, ia, y);
}
NXL_EXPORT void vdpackmc_d(uint32_t n, const nxl_z* a, const int32_t* ma, nxl_z* y) noexcept {
    slot<&VectorTable::pack_by_mask_c>(n, a, y, ma);
}
NXL_EXPORT void vdunpackic_d(uint32_t n, const nxl_z* a, nxl_z* y, int32_t incry) noexcept {
    copy_strided<1>(n, a, 1, y, incry);
}
NXL_EXPORT void vdunpackvc_d(uint32_t n, const nxl_z* a, nxl_z* y, const int32_t* iy) noexcept {
    unpack_indexed<1>(n, a, y, iy);
}
NXL_EXPORT void vdunpackmc_d(uint32_t n, const nxl_z* a, nxl_z* y, const int32_t* my) noexcept {
    unpack_masked<1>(n, a, y, my);
}

} // extern "C"
