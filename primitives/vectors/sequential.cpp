#include "primitives/vectors/sequential.hpp"

namespace nxl {

zcomplex nxl_productc(const zcomplex* src, i64 n) {
    if (n == 0) return 1.0;
    zcomplex product = src[0];
    for (i64 i = 1; i < n; ++i) product *= src[i];
    return product;
}

void nxl_powc(const zcomplex* a, const zcomplex* b, zcomplex* dst, i64 n) {
    for (i64 i = 1; i < n; ++i) dst[i] = std::pow(a[i], b[i]); // the C library's cpow
}

} // namespace nxl
