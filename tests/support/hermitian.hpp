// Symmetric and Hermitian matrices, one triangle stored.
#pragma once
#include "tests/support/lapack_matrices.hpp"
#include <cmath>

namespace nxl_test {

/// A Hermitian matrix, of which triangle `uplo` alone is there, and the imaginary parts of the diagonal are NaN.
template <class T> struct Hermitian {
    LapackMatrix<T> full, stored;

    Hermitian(char uplo, int n, unsigned seed)
        : full(matrix_of<T>(MatrixKind::random, n, n, 0, seed)),
          stored(n, n, 3) {
        for (int j = 0; j < n; ++j)
            for (int i = 0; i <= j; ++i) {
                if (i == j) full.at(i, i) = std::real(full.at(i, i));
                full.at(j, i) = conjugate(full.at(i, j));
                const int row = uplo == 'U' ? i : j, column = uplo == 'U' ? j : i;
                stored.at(row, column) = full.at(row, column);
                if (i == j) stored.at(i, i) = scalar<T>(std::real(full.at(i, i)), std::nan(""));
            }
    }
};

} // namespace nxl_test
