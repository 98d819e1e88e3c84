// Routines on row-major blocks that are compiled once: the vector width does not change their speed. Rows, columns and
// strides count elements; those of the source where there are two blocks.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// Where in a matrix a block begins.
struct Corner {
    std::uint32_t row, col;
};

/// The offset of a corner is taken modulo 2^32. Rows are copied in order, each as if at once.
void copy_sub_matrix_d(const double* src, double* dst, Corner from, Corner to, i64 rows, i64 cols,
                       std::uint32_t src_stride, std::uint32_t dst_stride);
void copy_sub_matrix_c(const zcomplex* src, zcomplex* dst, Corner from, Corner to, i64 rows, i64 cols,
                       std::uint32_t src_stride, std::uint32_t dst_stride);
void copy_block_d(const double* src, double* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride);
void copy_block_c(const zcomplex* src, zcomplex* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride);

/// On and below the diagonal, or below it; on and above, or above.
void copy_lower_d(const double* src, double* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride, bool diagonal);
void copy_lower_c(const zcomplex* src, zcomplex* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride,
                  bool diagonal);
void copy_upper_d(const double* src, double* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride, bool diagonal);
void copy_upper_c(const zcomplex* src, zcomplex* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride,
                  bool diagonal);
void zero_lower_d(double* a, i64 rows, i64 cols, i64 stride, bool diagonal);
void zero_lower_c(zcomplex* a, i64 rows, i64 cols, i64 stride, bool diagonal);
void zero_upper_d(double* a, i64 rows, i64 cols, i64 stride, bool diagonal);
void zero_upper_c(zcomplex* a, i64 rows, i64 cols, i64 stride, bool diagonal);

void column_exchange_d(double* a, i64 col1, i64 col2, i64 rows, i64 stride);
void column_exchange_c(zcomplex* a, i64 col1, i64 col2, i64 rows, i64 stride);

} // namespace nxl
