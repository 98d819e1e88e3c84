// Blocks copied between matrices, row by row.
#include "primitives/matrices/copy.hpp"
#include "primitives/matrices/rows.hpp"

namespace nxl {
namespace {

constexpr i64 stream_bytes = i64{32} << 20; // results from this size on go past the caches, by rows that are long
constexpr i64 stream_row_bytes = 4096;      // enough: each may leave part of a line at either end

void stream_row(const double* from, double* to, i64 n) {
    using Pair [[gnu::vector_size(16)]] = double;
    i64 i = 0;
    if (reinterpret_cast<std::uintptr_t>(to) % sizeof(Pair) != 0) to[i] = from[i], i = 1;
    for (; i + 2 <= n; i += 2) {
        Pair pair;
        std::memcpy(&pair, from + i, sizeof pair);
        __builtin_nontemporal_store(pair, reinterpret_cast<Pair*>(to + i));
    }
    if (i < n) to[i] = from[i];
}

template <class T> bool is_streamed(const T* src, const T* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride) {
    constexpr i64 size = sizeof(T);
    if (cols < stream_row_bytes / size || cols < stream_bytes / size / rows) return false;
    const auto first = [](const T* p) { return reinterpret_cast<std::uintptr_t>(p); };
    const auto behind = [&](const T* p, i64 stride) { return first(p + (rows - 1) * stride + cols); };
    return first(dst) >= behind(src, src_stride) || first(src) >= behind(dst, dst_stride);
}

template <class T> void copy_block(const T* src, T* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride) {
    if (rows == 0 || cols == 0) return;
    if (is_streamed(src, dst, rows, cols, src_stride, dst_stride)) {
        for (i64 r = 0; r < rows; ++r)
            stream_row(reinterpret_cast<const double*>(src + r * src_stride),
                       reinterpret_cast<double*>(dst + r * dst_stride), cols * i64{sizeof(T) / sizeof(double)});
        __builtin_ia32_sfence(); // what went past the caches is there before anything that the caller stores next
        return;
    }
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
