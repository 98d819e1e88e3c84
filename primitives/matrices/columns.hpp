// Columns of row-major blocks.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// In the first `rows` rows.
void column_exchange_d(double* a, i64 col1, i64 col2, i64 rows, i64 stride);
void column_exchange_c(zcomplex* a, i64 col1, i64 col2, i64 rows, i64 stride);

} // namespace nxl
