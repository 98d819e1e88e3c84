// Transposes and adjoints from one matrix to another, tile by tile.
#include "primitives/matrices/kernels.hpp"
#include "primitives/matrices/tile.hpp"

namespace nxl::NXL_TARGET {
namespace {

constexpr i64 kStreamBytes = i64{4} << 20; // results from this size on go past the caches, which they would only sweep
constexpr i64 kStreamRows = 64;            // of the source, at least: fewer make too short runs
constexpr i64 kCachedColumnBytes = 256;    // of source rows, one after the other: their columns stay in the first cache
constexpr i64 kStreamColumnBytes = 2048;   // the same when results do not need it: limited by pages at hand
constexpr i64 kRunBytes = 512;             // of a result's row, collected where lines of different rows do not line up
constexpr i64 kCollectedRows = 32;         // of the result

template <class T> struct Source {
    const T* data;
    i64 stride;

    const T* at(i64 r, i64 c) const { return data + r * stride + c; }
};
template <class T> struct Result {
    T* data;
    i64 stride;

    T* at(i64 r, i64 c) const { return data + r * stride + c; }
};

/// Element by element, for less than a tile.
template <class T, bool Conjugate>
void edge(const Source<T>& src, const Result<T>& dst, i64 rows, i64 cols) {
    for (i64 c = 0; c < cols; ++c)
        for (i64 r = 0; r < rows; ++r) *dst.at(c, r) = conjugated_if<Conjugate>(*src.at(r, c));
}

/// Rows of the source by strips as high as a tile, so many columns at a time. A streamed result begins with a line.
template <class T, bool Conjugate, bool Stream>
void by_strips(const Source<T>& src, const Result<T>& dst, i64 rows, i64 cols) {
    constexpr i64 line = kLine<T>, block = (Stream ? kStreamColumnBytes : kCachedColumnBytes) / i64{sizeof(T)};
    for (i64 left = 0; left < cols; left += block) {
        const i64 right = lesser(left + block, cols);
        i64 r = 0;
        for (; r + line <= rows; r += line) {
            const i64 ahead = r + 2 * line <= rows ? line : 0; // rows to the strip to be fetched
            i64 c = left;
            for (; c + line <= right; c += line) {
                if constexpr (Stream)
                    for (i64 i = 0; i < line; ++i) __builtin_prefetch(src.at(r + ahead + i, c));
                transpose_tile<T, Conjugate, Stream>(src.at(r, c), src.stride, dst.at(c, r), dst.stride);
            }
            edge<T, Conjugate>({src.at(r, c), src.stride}, {dst.at(c, r), dst.stride}, line, right - c);
        }
        edge<T, Conjugate>({src.at(r, left), src.stride}, {dst.at(left, r), dst.stride}, rows - r, right - left);
    }
}

/// Doubles from p to the next start of a line.
i64 to_next_line(const double* p) {
    return -(static_cast<i64>(reinterpret_cast<std::uintptr_t>(p)) / i64{sizeof(double)}) & (kLine<double> - 1);
}

/// Whole lines past the caches, the rest of the first and the last by the ordinary way.
void stream_out(const double* from, double* to, i64 n) {
    const i64 lines = lesser(to_next_line(to), n);
    i64 i = 0;
    for (; i < lines; ++i) to[i] = from[i];
    for (; i + kLine<double> <= n; i += kLine<double>)
        for (int k = 0; k < kLine<double>; k += kWidth)
            __builtin_nontemporal_store(load<kWidth>(from + i + k), reinterpret_cast<Vec<kWidth>*>(to + i + k));
    for (; i < n; ++i) to[i] = from[i];
}

/// The transposed block into a small result. Columns to the right of it, out of so many, are fetched into the caches.
template <class T, bool Conjugate>
void collect(const Source<T>& src, const Result<T>& dst, i64 height, i64 width, i64 cols) {
    constexpr i64 line = kLine<T>;
    const i64 ahead = cols >= 2 * kCollectedRows ? kCollectedRows : 0;
    i64 r = 0;
    for (; width == kCollectedRows && r + line <= height; r += line)
        for (i64 c = 0; c < kCollectedRows; c += line) {
            for (i64 i = 0; i < line; ++i) __builtin_prefetch(src.at(r + i, c + ahead), 0, 2);
            transpose_tile<T, Conjugate, false>(src.at(r, c), src.stride, dst.at(c, r), dst.stride);
        }
    edge<T, Conjugate>({src.at(r, 0), src.stride}, {dst.at(0, r), dst.stride}, height - r, width);
}

/// For results whose rows start at different places in their lines: long runs of some rows are collected first. Runs
/// end with a line of their row; to reach it, a line more is collected.
template <class T, bool Conjugate> void collected(const Source<T>& src, const Result<T>& dst, i64 rows, i64 cols) {
    constexpr i64 line = kLine<T>, run = kRunBytes / sizeof(T), room = run + line;
    static_assert(kCollectedRows % line == 0 && run % line == 0);
    alignas(kLineBytes) T buffer[kCollectedRows * room];
    for (i64 top = 0; top < rows; top += run) {
        const bool last = rows - top <= room;
        const i64 height = last ? rows - top : room;
        for (i64 left = 0; left < cols; left += kCollectedRows) {
            const i64 width = lesser(kCollectedRows, cols - left);
            collect<T, Conjugate>({src.at(top, left), src.stride}, {buffer, room}, height, width, cols - left);
            for (i64 c = 0; c < width; ++c) {
                double* row = parts(dst.at(left + c, top));
                const i64 line_start = to_next_line(row), begin = top == 0 ? 0 : line_start;
                const i64 end = last ? height * kParts<T> : run * kParts<T> + line_start;
                stream_out(parts(buffer + c * room) + begin, row + begin, end - begin);
            }
        }
        if (last) return;
    }
}

template <class T, bool Conjugate> void streamed(const Source<T>& src, const Result<T>& dst, i64 rows, i64 cols) {
    const i64 shift = to_next_line(parts(dst.data));
    if (dst.stride % kLine<T> == 0 && shift % kParts<T> == 0) {
        const i64 head = shift / kParts<T>; // less than a line, so less than kStreamRows
        edge<T, Conjugate>(src, dst, head, cols);
        by_strips<T, Conjugate, true>({src.at(head, 0), src.stride}, {dst.data + head, dst.stride}, rows - head, cols);
    } else {
        collected<T, Conjugate>(src, dst, rows, cols);
    }
    __builtin_ia32_sfence(); // what went past the caches is there before anything that the caller stores next
}

template <class T, bool Conjugate> void transpose(const Source<T>& src, const Result<T>& dst, i64 rows, i64 cols) {
    if (rows == 0 || cols == 0) return;
    constexpr i64 stream_columns = kStreamBytes / i64{sizeof(T)};
    if (rows >= kStreamRows && cols >= stream_columns / rows) streamed<T, Conjugate>(src, dst, rows, cols);
    else by_strips<T, Conjugate, false>(src, dst, rows, cols);
}

} // namespace

void transpose_d(const double* src, double* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride) {
    transpose<double, false>({src, src_stride}, {dst, dst_stride}, rows, cols);
}
void transpose_c(const zcomplex* src, zcomplex* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride) {
    transpose<Complex, false>({scalars(src), src_stride}, {scalars(dst), dst_stride}, rows, cols);
}
void adjoint_c(const zcomplex* src, zcomplex* dst, i64 rows, i64 cols, i64 src_stride, i64 dst_stride) {
    transpose<Complex, true>({scalars(src), src_stride}, {scalars(dst), dst_stride}, rows, cols);
}

} // namespace nxl::NXL_TARGET
