// Vector primitives whose elements follow one another, or go through the C library: one body for all processors.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// The product in the order of the array; 1 when it is empty.
zcomplex nxl_productc(const zcomplex* src, i64 n);

/// dst[i] = a[i] to the power b[i], from i = 1 on: element 0 stays as it is.
void nxl_powc(const zcomplex* a, const zcomplex* b, zcomplex* dst, i64 n);

} // namespace nxl
