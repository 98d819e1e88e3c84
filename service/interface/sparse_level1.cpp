// Sparse BLAS level 1: entries. Each hands its kernel a 64-bit copy of the index array; without memory for it the call
// is reported as such and has no effect.
#include "nxl.h"
#include "service/errors.hpp"
#include "service/export.hpp"
#include "service/interface/integers.hpp"
#include "service/kernel_slot.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT void daxpyi(const int* nz, const double* a, const double* x, const int* indx, double* y) noexcept {
    const i64 nz64 = *nz;
    const WideInts indices(indx, nz64);
    if (!indices.data()) return report_no_memory("DAXPYI");
    slot<&KernelTable::daxpyi>(nz64, *a, x, indices.data(), y);
}

NXL_EXPORT double ddoti(const int* nz, const double* x, const int* indx, const double* y) noexcept {
    const i64 nz64 = *nz;
    const WideInts indices(indx, nz64);
    if (!indices.data()) return report_no_memory("DDOTI "), 0.0;
    return slot<&KernelTable::ddoti>(nz64, x, indices.data(), y);
}

NXL_EXPORT void dgthr(const int* nz, const double* y, double* x, const int* indx) noexcept {
    const i64 nz64 = *nz;
    const WideInts indices(indx, nz64);
    if (!indices.data()) return report_no_memory("DGTHR ");
    slot<&KernelTable::dgthr>(nz64, y, x, indices.data());
}

NXL_EXPORT void dsctr(const int* nz, const double* x, const int* indx, double* y) noexcept {
    const i64 nz64 = *nz;
    const WideInts indices(indx, nz64);
    if (!indices.data()) return report_no_memory("DSCTR ");
    slot<&KernelTable::dsctr>(nz64, x, indices.data(), y);
}

NXL_EXPORT void zaxpyi(const int* nz, const nxl_z* a, const nxl_z* x, const int* indx, nxl_z* y) noexcept {
    const i64 nz64 = *nz;
    const WideInts indices(indx, nz64);
    if (!indices.data()) return report_no_memory("ZAXPYI");
    slot<&KernelTable::zaxpyi>(nz64, *a, x, indices.data(), y);
}

NXL_EXPORT void zdotci(nxl_z* result, const int* nz, const nxl_z* x, const int* indx, const nxl_z* y) noexcept {
    const i64 nz64 = *nz;
    const WideInts indices(indx, nz64);
    if (!indices.data()) return report_no_memory("ZDOTCI");
    slot<&KernelTable::zdotci>(*result, nz64, x, indices.data(), y);
}

NXL_EXPORT void zdotui(nxl_z* result, const int* nz, const nxl_z* x, const int* indx, const nxl_z* y) noexcept {
    const i64 nz64 = *nz;
    const WideInts indices(indx, nz64);
    if (!indices.data()) return report_no_memory("ZDOTUI");
    slot<&KernelTable::zdotui>(*result, nz64, x, indices.data(), y);
}

NXL_EXPORT void zgthr(const int* nz, const nxl_z* y, nxl_z* x, const int* indx) noexcept {
    const i64 nz64 = *nz;
    const WideInts indices(indx, nz64);
    if (!indices.data()) return report_no_memory("ZGTHR ");
    slot<&KernelTable::zgthr>(nz64, y, x, indices.data());
}

NXL_EXPORT void zsctr(const int* nz, const nxl_z* x, const int* indx, nxl_z* y) noexcept {
    const i64 nz64 = *nz;
    const WideInts indices(indx, nz64);
    if (!indices.data()) return report_no_memory("ZSCTR ");
    slot<&KernelTable::zsctr>(nz64, x, indices.data(), y);
}

} // extern "C"
