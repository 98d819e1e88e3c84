// Functions with a complex result, which GNU Fortran and C expect in registers and libnxl.so writes through a pointer.
#include "nxl.h"
#include "service/export.hpp"

// Returned as C's double _Complex is, in two registers; C++ warns because C has no name for std::complex.
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"

extern "C" {

NXL_EXPORT nxl_z zdotc_(const int* n, const nxl_z* x, const int* incx, const nxl_z* y, const int* incy) noexcept {
    nxl_z sum;
    zdotc(&sum, n, x, incx, y, incy);
    return sum;
}

NXL_EXPORT nxl_z zdotu_(const int* n, const nxl_z* x, const int* incx, const nxl_z* y, const int* incy) noexcept {
    nxl_z sum;
    zdotu(&sum, n, x, incx, y, incy);
    return sum;
}

NXL_EXPORT nxl_z zdotci_(const int* nz, const nxl_z* x, const int* indx, const nxl_z* y) noexcept {
    nxl_z sum;
    zdotci(&sum, nz, x, indx, y);
    return sum;
}

NXL_EXPORT nxl_z zdotui_(const int* nz, const nxl_z* x, const int* indx, const nxl_z* y) noexcept {
    nxl_z sum;
    zdotui(&sum, nz, x, indx, y);
    return sum;
}

} // extern "C"
