// Solutions with the Cholesky factor of a band.
#pragma once
#include "lapack/kernel/source/band/band_triangle.hpp"

namespace nxl {

/// B := (U^H U)^-1 B or (L L^H)^-1 B
template <class T> void solve_band_cholesky(char uplo, const Columns<const T>& factor, const Matrix<T>& b) {
    for (const char trans : {uplo == 'U' ? 'C' : 'N', uplo == 'U' ? 'N' : 'C'})
        solve_triangle(uplo, trans, 'N', factor, b);
}

} // namespace nxl
