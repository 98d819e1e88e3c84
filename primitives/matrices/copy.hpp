// Copies of row-major blocks. Rows, columns and strides count elements, those of the source. Compiled once, as all here
// without vectors: the width does not change its speed.
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

} // namespace nxl
