// Blocks copied between matrices, row by row.
#include "primitives/matrices/rows.hpp"

namespace nxl {
namespace {

template <class T> void copy_block(const T* src, T* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride) {
    if (cols == 0) return;
    for (i64 r = 0; r < rows; ++r) copy_row(src + r * src_stride, dst + r * dst_stride, cols);
}

std::uint32_t offset(Corner corner, std::uint32_t stride) { return stride * corner.row + corner.col; }

template <class T>
void copy_sub_matrix(const T* src, T* dst, Corner from, Corner to, i64 rows, i64 cols, std::uint32_t src_stride,
                     std::uint32_t dst_stride) {
    copy_block(src + offset(from, src_stride), dst + offset(to, dst_stride), rows, cols, src_stride, dst_stride);
}

} // namespace

void copy_sub_matrix_d(const double* src, double* dst, Corner from, Corner to, i64 rows, i64 cols,
                       std::uint32_t src_stride, std::uint32_t dst_stride) {
    copy_sub_matrix(src, dst, from, to, rows, cols, src_stride, dst_stride);
}
void copy_sub_matrix_c(const zcomplex* src, zcomplex* dst, Corner from, Corner to, i64 rows, i64 cols,
                       std::uint32_t src_stride, std::uint32_t dst_stride) {
    copy_sub_matrix(src, dst, from, to, rows, cols, src_stride, dst_stride);
}
void copy_block_d(const double* src, double* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride) {
    copy_block(src, dst, rows, cols, src_stride, dst_stride);
}
void copy_block_c(const zcomplex* src, zcomplex* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride) {
    copy_block(src, dst, rows, cols, src_stride, dst_stride);
}

} // namespace nxl
