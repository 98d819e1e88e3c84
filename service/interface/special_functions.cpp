// Bessel and Airy functions: entries.
#include "nxl.h"
#include "primitives/bessel/airy_functions.hpp"
#include "primitives/bessel/sequences.hpp"
#include "service/export.hpp"
#include "service/interface/integers.hpp"

using namespace nxl;
using namespace nxl::bessel;

extern "C" {

NXL_EXPORT void CAIRY(const nxl_c* z, const int* id, const int* kode, nxl_c* ai, int* nz, int* ierr) noexcept {
    OutInt zeros(nz);
    *ierr = static_cast<int>(airy_ai({*z, *id, *kode}, ai, &zeros.value));
}

NXL_EXPORT void CBIRY(const nxl_c* z, const int* id, const int* kode, nxl_c* bi, int* ierr) noexcept {
    *ierr = static_cast<int>(airy_bi({*z, *id, *kode}, bi));
}

NXL_EXPORT void CBESH(const nxl_c* z, const float* fnu, const int* kode, const int* m, const int* n, nxl_c* cy, int* nz,
                      int* ierr) noexcept {
    OutInt zeros(nz);
    *ierr = static_cast<int>(hankel_sequence(*m, {*z, *fnu, *kode, *n}, cy, &zeros.value));
}

NXL_EXPORT void CBESI(const nxl_c* z, const float* fnu, const int* kode, const int* n, nxl_c* cy, int* nz,
                      int* ierr) noexcept {
    OutInt zeros(nz);
    *ierr = static_cast<int>(bessel_sequence(Function::i, {*z, *fnu, *kode, *n}, cy, &zeros.value));
}

NXL_EXPORT void CBESJ(const nxl_c* z, const float* fnu, const int* kode, const int* n, nxl_c* cy, int* nz,
                      int* ierr) noexcept {
    OutInt zeros(nz);
    *ierr = static_cast<int>(bessel_sequence(Function::j, {*z, *fnu, *kode, *n}, cy, &zeros.value));
}

NXL_EXPORT void CBESK(const nxl_c* z, const float* fnu, const int* kode, const int* n, nxl_c* cy, int* nz,
                      int* ierr) noexcept {
    OutInt zeros(nz);
    *ierr = static_cast<int>(bessel_sequence(Function::k, {*z, *fnu, *kode, *n}, cy, &zeros.value));
}

NXL_EXPORT void CBESY(const nxl_c* z, const float* fnu, const int* kode, const int* n, nxl_c* cy, int* nz, nxl_c*,
                      int* ierr) noexcept {
    OutInt zeros(nz);
    *ierr = static_cast<int>(bessel_sequence(Function::y, {*z, *fnu, *kode, *n}, cy, &zeros.value));
}

} // extern "C"
