// Triangles copied and zeroed, row by row.
#include "primitives/matrices/triangles.hpp"
#include "primitives/matrices/rows.hpp"
#include <algorithm>

namespace nxl {
namespace {

/// Elements of row r in the lower triangle of so many columns.
i64 lower_count(i64 r, i64 cols, bool diagonal) { return std::min(r + (diagonal ? 1 : 0), cols); }

/// Where the upper triangle begins in row r; it has nothing there from `cols` on.
i64 upper_begin(i64 r, bool diagonal) { return r + (diagonal ? 0 : 1); }

template <class T>
void copy_lower(const T* src, T* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride, bool diagonal) {
    if (cols == 0) return;
    for (i64 r = 0; r < rows; ++r) copy_row(src + r * src_stride, dst + r * dst_stride, lower_count(r, cols, diagonal));
}

template <class T>
void copy_upper(const T* src, T* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride, bool diagonal) {
    for (i64 r = 0; r < rows && upper_begin(r, diagonal) < cols; ++r) {
        const i64 begin = upper_begin(r, diagonal);
        copy_row(src + r * src_stride + begin, dst + r * dst_stride + begin, cols - begin);
    }
}

template <class T> void zero_lower(T* a, i64 rows, i64 cols, i64 stride, bool diagonal) {
    if (cols == 0) return;
    for (i64 r = 0; r < rows; ++r) zero_row(a + r * stride, lower_count(r, cols, diagonal));
}

template <class T> void zero_upper(T* a, i64 rows, i64 cols, i64 stride, bool diagonal) {
    for (i64 r = 0; r < rows && upper_begin(r, diagonal) < cols; ++r) {
        const i64 begin = upper_begin(r, diagonal);
        zero_row(a + r * stride + begin, cols - begin);
    }
}

} // namespace

void copy_lower_d(const double* src, double* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride, bool diagonal) {
    copy_lower(src, dst, rows, cols, src_stride, dst_stride, diagonal);
}
void copy_lower_c(const zcomplex* src, zcomplex* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride,
                  bool diagonal) {
    copy_lower(src, dst, rows, cols, src_stride, dst_stride, diagonal);
}
void copy_upper_d(const double* src, double* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride, bool diagonal) {
    copy_upper(src, dst, rows, cols, src_stride, dst_stride, diagonal);
}
void copy_upper_c(const zcomplex* src, zcomplex* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride,
                  bool diagonal) {
    copy_upper(src, dst, rows, cols, src_stride, dst_stride, diagonal);
}
void zero_lower_d(double* a, i64 rows, i64 cols, i64 stride, bool diagonal) {
    zero_lower(a, rows, cols, stride, diagonal);
}
void zero_lower_c(zcomplex* a, i64 rows, i64 cols, i64 stride, bool diagonal) {
    zero_lower(a, rows, cols, stride, diagonal);
}
void zero_upper_d(double* a, i64 rows, i64 cols, i64 stride, bool diagonal) {
    zero_upper(a, rows, cols, stride, diagonal);
}
void zero_upper_c(zcomplex* a, i64 rows, i64 cols, i64 stride, bool diagonal) {
    zero_upper(a, rows, cols, stride, diagonal);
}

} // namespace nxl
