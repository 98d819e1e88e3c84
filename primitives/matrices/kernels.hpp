// The matrix kernels of the target that is being compiled, as the table lists them.
#pragma once
#include "primitives/matrices/matrix_table.hpp"
#include "service/vec_complex.hpp"

namespace nxl::NXL_TARGET {

void row_exchange_d(double* a, i64 row1, i64 row2, i64 cols, i64 stride);

} // namespace nxl::NXL_TARGET
