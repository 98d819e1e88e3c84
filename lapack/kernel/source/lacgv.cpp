// Conjugation of a vector.
#include "lapack/kernel/source/lacgv.hpp"

namespace nxl {

void nxl_lapack_zlacgv(const i64* n, zcomplex* x, const i64* incx) {
    const i64 count = *n, step = *incx;
    i64 place = step < 0 ? (1 - count) * step : 0;
    for (i64 i = 0; i < count; ++i, place += step) x[place] = std::conj(x[place]);
}

} // namespace nxl
