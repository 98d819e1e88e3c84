// Norms of matrices. A NaN anywhere in the matrix makes every norm of it NaN.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// Of a triangular matrix: '1' (or O) the largest sum of moduli in a column, I that in a row. `row_sums`: as many as
/// the matrix has rows, for I.
template <class T>
double triangle_norm(char norm, char uplo, char diag, const Matrix<const T>& a, double* row_sums);

} // namespace nxl
