// Triangles of row-major blocks. Rows and columns count elements, those of the source where there are two blocks.
#pragma once
#include "service/types.hpp"

namespace nxl {

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

} // namespace nxl
