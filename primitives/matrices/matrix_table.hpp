// The one list of matrix kernels: loops over row-major blocks, once per vector width. Rows, columns and strides count
// elements; those of the source where there are two blocks.
#pragma once
#include "service/types.hpp"

namespace nxl {

struct MatrixTable {
    void (*transpose_d)(const double* src, double* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride);
    void (*transpose_c)(const zcomplex* src, zcomplex* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride);
    void (*adjoint_c)(const zcomplex* src, zcomplex* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride);
    void (*transpose_square_d)(double* a, i64 n, i64 stride);
    void (*transpose_square_c)(zcomplex* a, i64 n, i64 stride);
    void (*adjoint_square_c)(zcomplex* a, i64 n, i64 stride);
    void (*row_exchange_d)(double* a, i64 row1, i64 row2, i64 cols, i64 stride);
    void (*row_exchange_c)(zcomplex* a, i64 row1, i64 row2, i64 cols, i64 stride);
};

} // namespace nxl
