// Conjugation of a vector.
#include "lapack/kernel/source/common/lacgv.hpp"

namespace nxl {

void nxl_lapack_zlacgv(const i64& n, zcomplex* x, const i64& incx) {
    i64 place = incx < 0 ? (1 - n) * incx : 0;
    for (i64 i = 0; i < n; ++i, place += incx) x[place] = std::conj(x[place]);
}

} // namespace nxl
