// The matrix kernels of the target that is being compiled, as the table lists them.
#pragma once
#include "primitives/matrices/matrix_table.hpp"
#include "service/vec_complex.hpp"

namespace nxl::NXL_TARGET {

void transpose_d(const double* src, double* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride);
void transpose_c(const zcomplex* src, zcomplex* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride);
void adjoint_c(const zcomplex* src, zcomplex* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride);
void transpose_square_d(double* a, i64 n, i64 stride);
void transpose_square_c(zcomplex* a, i64 n, i64 stride);
void adjoint_square_c(zcomplex* a, i64 n, i64 stride);
void row_exchange_d(double* a, i64 row1, i64 row2, i64 cols, i64 stride);
void row_exchange_c(zcomplex* a, i64 row1, i64 row2, i64 cols, i64 stride);

} // namespace nxl::NXL_TARGET
