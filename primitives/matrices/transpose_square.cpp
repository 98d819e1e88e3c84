// Square matrices transposed and conjugated in place: blocks change places across the diagonal. One of the two goes
// through a buffer. Storing to either while loading from it would stall where rows are a multiple of a page apart.
#include "primitives/matrices/kernels.hpp"
#include "primitives/matrices/tile.hpp"

namespace nxl::NXL_TARGET {
namespace {

constexpr i64 kBlockBytes = 256; // of a block's row

template <class T> constexpr i64 kBlock = kBlockBytes / sizeof(T);

/// Rows and columns are multiples of a line, at most a block.
template <class T, bool Conjugate>
void transpose_block(const T* src, i64 src_stride, T* dst, i64 dst_stride, i64 rows, i64 cols) {
    constexpr i64 line = kLine<T>;
    for (i64 r = 0; r < rows; r += line)
        for (i64 c = 0; c < cols; c += line)
            transpose_tile<T, Conjugate, false>(src + r * src_stride + c, src_stride, dst + c * dst_stride + r,
                                                dst_stride);
}

/// Doubles; as many as are in lines.
[[gnu::always_inline]] inline void copy_lines(const double* from, double* to, i64 n) {
    for (i64 i = 0; i < n; i += kWidth) store<kWidth>(to + i, load<kWidth>(from + i));
}

/// a: rows by cols, above the diagonal; b: its mirror image, or a itself.
template <class T, bool Conjugate> void exchange_blocks(T* a, T* b, i64 rows, i64 cols, i64 stride) {
    alignas(kLineBytes) T buffer[kBlock<T> * kBlock<T>];
    transpose_block<T, Conjugate>(a, stride, buffer, kBlock<T>, rows, cols);
    if (a != b) transpose_block<T, Conjugate>(b, stride, a, stride, cols, rows);
    for (i64 c = 0; c < cols; ++c) copy_lines(parts(buffer + c * kBlock<T>), parts(b + c * stride), rows * kParts<T>);
}

/// The columns from `first` on, which are too few for tiles, with the rows of the same numbers.
template <class T, bool Conjugate> void transpose_edge(T* a, i64 first, i64 n, i64 stride) {
    for (i64 r = 0; r < n; ++r)
        for (i64 c = r < first ? first : r; c < n; ++c) {
            const T above = a[r * stride + c], below = a[c * stride + r];
            a[c * stride + r] = conjugated_if<Conjugate>(above);
            a[r * stride + c] = conjugated_if<Conjugate>(below);
        }
}

template <class T, bool Conjugate> void transpose_square(T* a, i64 n, i64 stride) {
    constexpr i64 block = kBlock<T>;
    const i64 tiled = n / kLine<T> * kLine<T>;
    for (i64 r = 0; r < tiled; r += block)
        for (i64 c = r; c < tiled; c += block)
            exchange_blocks<T, Conjugate>(a + r * stride + c, a + c * stride + r, lesser(block, tiled - r),
                                          lesser(block, tiled - c), stride);
    transpose_edge<T, Conjugate>(a, tiled, n, stride);
}

} // namespace

void transpose_square_d(double* a, i64 n, i64 stride) { transpose_square<double, false>(a, n, stride); }
void transpose_square_c(zcomplex* a, i64 n, i64 stride) { transpose_square<Complex, false>(scalars(a), n, stride); }
void adjoint_square_c(zcomplex* a, i64 n, i64 stride) { transpose_square<Complex, true>(scalars(a), n, stride); }

} // namespace nxl::NXL_TARGET
