// The one list of matrix kernels: loops over row-major blocks, once per vector width. Rows, columns
// and strides count elements.
#pragma once
#include "service/types.hpp"

namespace nxl {

struct MatrixTable {
    void (*row_exchange_d)(double* a, i64 row1, i64 row2, i64 cols, i64 stride);
};

} // namespace nxl
