// The peer of the primitives family: what a caller without the library would write in place of a call, under the same
// names, as loops for the compiler. What nxl-bench does not time is left out.
#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdint>
#include <functional>
#include <utility>

#define EXPORT __attribute__((visibility("default")))

namespace {

using z = std::complex<double>;
using u32 = std::uint32_t;
using i32 = std::int32_t;

template <class A, class B, class Operation> void map(const A* src, B* dst, u32 n, Operation operation) {
    for (u32 i = 0; i < n; ++i) dst[i] = operation(src[i]);
}

template <class A, class B, class C, class Operation>
void map(const A* a, const B* b, C* dst, u32 n, Operation operation) {
    for (u32 i = 0; i < n; ++i) dst[i] = operation(a[i], b[i]);
}

constexpr double sign(double value) { return value < 0.0 ? -1.0 : value == 0.0 ? 0.0 : 1.0; }

template <class T> u32 pack(u32 n, const T* src, T* dst, const i32* mask) {
    u32 kept = 0;
    for (u32 i = 0; i < n; ++i)
        if (mask[i] > 0) dst[kept++] = src[i];
    return kept;
}

std::size_t at(u32 row, u32 column, u32 stride) { return std::size_t{row} * stride + column; }

/// Element by element; `part` says which columns of a row.
template <class T, class Part> void copy(const T* src, T* dst, u32 rows, u32 src_stride, u32 dst_stride, Part part) {
    for (u32 r = 0; r < rows; ++r) {
        const auto [begin, end] = part(r);
        for (u32 c = begin; c < end; ++c) dst[at(r, c, dst_stride)] = src[at(r, c, src_stride)];
    }
}

template <class T, class Operation>
void transpose(const T* src, T* dst, u32 rows, u32 cols, u32 src_stride, u32 dst_stride, Operation operation) {
    for (u32 r = 0; r < rows; ++r)
        for (u32 c = 0; c < cols; ++c) dst[at(c, r, dst_stride)] = operation(src[at(r, c, src_stride)]);
}

template <class T> void transpose_square(T* a, u32 n, u32 stride) {
    for (u32 r = 0; r < n; ++r)
        for (u32 c = 0; c < r; ++c) std::swap(a[at(r, c, stride)], a[at(c, r, stride)]);
}

template <class T> T itself(T value) { return value; }
z conjugate(z value) { return std::conj(value); }

} // namespace

extern "C" {

EXPORT void AddValue_d(const double* src, double* dst, double value, u32 n) {
    map(src, dst, n, [=](double a) { return a + value; });
}
EXPORT void AddValuec_d(const z* src, z* dst, const z* value, u32 n) {
    map(src, dst, n, [v = *value](z a) { return a + v; });
}
EXPORT void SubFromValuecd_d(const z* src, z* dst, double value, u32 n) {
    map(src, dst, n, [=](z a) { return value - a; });
}
EXPORT void DivideValue_d(const double* src, double* dst, double value, u32 n) {
    map(src, dst, n, [=](double a) { return value / a; });
}
EXPORT void DivideValuec_d(const z* src, z* dst, const z* value, u32 n) {
    map(src, dst, n, [v = *value](z a) { return v / a; });
}
EXPORT void ScaleByValuec_d(const z* src, z* dst, const z* value, u32 n) {
    map(src, dst, n, [v = *value](z a) { return a * v; });
}
EXPORT void AddVeccd_d(const z* a, const double* b, z* dst, u32 n) { map(a, b, dst, n, std::plus<>{}); }
EXPORT void MulVeccd_d(const z* a, const double* b, z* dst, u32 n) { map(a, b, dst, n, std::multiplies<>{}); }
EXPORT void DivVeccc_d(const z* a, const z* b, z* dst, u32 n) { map(a, b, dst, n, std::divides<>{}); }
EXPORT void ConjMulcc_d(const z* a, const z* b, z* dst, u32 n) {
    map(a, b, dst, n, [](z left, z right) { return std::conj(left) * right; });
}
EXPORT void Sgndd_d(const double* src, double* dst, u32 n) { map(src, dst, n, sign); }
EXPORT void SgnMul_d(const double* src, double* dst, u32 n) {
    map(src, dst, dst, n, [](double a, double b) { return a < 0.0 ? -b : a == 0.0 ? 0.0 : b; });
}
EXPORT void Rem_d(const double* x, const double* y, double* dst, u32 n) {
    map(x, y, dst, n, [](double a, double b) { return a - b * static_cast<int>(a / b); });
}
EXPORT void RemVal_d(const double* x, double value, double* dst, u32 n) {
    const double inverse = 1.0 / value;
    map(x, dst, n, [=](double a) { return a - static_cast<int>(a * inverse) * value; });
}
EXPORT void Ceil_d(const double* src, double* dst, u32 n) {
    map(src, dst, n, [](double a) { return std::ceil(a); });
}
EXPORT void Floor_d(const double* src, double* dst, u32 n) {
    map(src, dst, n, [](double a) { return std::floor(a); });
}
EXPORT void CumSum_d(const double* src, double* dst, u32 n) {
    double sum = 0.0;
    for (u32 i = 0; i < n; ++i) dst[i] = sum += src[i];
}
EXPORT void CumSumDelta_d(const double* src, double* dst, u32 n, u32 delta) {
    for (u32 i = 0; i < n; ++i) dst[i] = i < delta ? src[i] : src[i] + dst[i - delta];
}
EXPORT double Product_d(const double* src, u32 n) {
    double product = 1.0;
    for (u32 i = 0; i < n; ++i) product *= src[i];
    return product;
}
EXPORT void Reverse_d(const z* src, z* dst, u32 n) {
    for (u32 i = 0; i < n; ++i) dst[i] = src[n - 1 - i];
}
EXPORT void Flip_d(const z* src, z* dst, u32 n) {
    map(src, dst, n, [](z a) { return z(a.imag(), a.real()); });
}
EXPORT void MulI_d(const z* src, z* dst, u32 n) {
    map(src, dst, n, [](z a) { return z(-a.imag(), a.real()); });
}
EXPORT void Rampc_d(z* dst, u32 n, const z* offset, const z* step) {
    const z first = *offset, each = *step;
    for (u32 i = 0; i < n; ++i) dst[i] = first + static_cast<double>(static_cast<int>(i)) * each;
}
EXPORT u32 PackByMask_d(u32 n, const double* src, double* dst, const i32* mask) { return pack(n, src, dst, mask); }

EXPORT void vdpacki(const i32* n, const double* a, const i32* incra, double* y) {
    for (i32 i = 0; i < *n; ++i) y[i] = a[std::ptrdiff_t{i} * *incra];
}
EXPORT void vdpackv(const i32* n, const double* a, const i32* ia, double* y) {
    for (i32 i = 0; i < *n; ++i) y[i] = a[ia[i]];
}
EXPORT void vdpackm(const i32* n, const double* a, const i32* ma, double* y) { pack(static_cast<u32>(*n), a, y, ma); }
EXPORT void vdunpackv(const i32* n, const double* a, double* y, const i32* iy) {
    for (i32 i = 0; i < *n; ++i) y[iy[i]] = a[i];
}

EXPORT void CopySubMatrix_d(const double* src, double* dst, u32 src_row, u32 src_col, u32 dst_row, u32 dst_col,
                            u32 rows, u32 cols, u32 src_stride, u32 dst_stride) {
    copy(src + at(src_row, src_col, src_stride), dst + at(dst_row, dst_col, dst_stride), rows, src_stride, dst_stride,
         [=](u32) { return std::pair(0U, cols); });
}
EXPORT void ResizeMatrix_d(const double* src, double* dst, u32 rows, u32 cols, u32 src_stride, u32 dst_stride) {
    copy(src, dst, rows, src_stride, dst_stride, [=](u32) { return std::pair(0U, cols); });
}
EXPORT void TransposeMatrix_d(const double* src, double* dst, u32 rows, u32 cols, u32 src_stride, u32 dst_stride) {
    transpose(src, dst, rows, cols, src_stride, dst_stride, itself<double>);
}
EXPORT void TransposeMatrixc_d(const z* src, z* dst, u32 rows, u32 cols, u32 src_stride, u32 dst_stride) {
    transpose(src, dst, rows, cols, src_stride, dst_stride, itself<z>);
}
EXPORT void AdjungateMatrixc_d(const z* src, z* dst, u32 rows, u32 cols, u32 src_stride, u32 dst_stride) {
    transpose(src, dst, rows, cols, src_stride, dst_stride, conjugate);
}
EXPORT void TransposeSquareMatrix_d(double* a, u32 n, u32 stride) { transpose_square(a, n, stride); }
EXPORT void TransposeSquareMatrixc_d(z* a, u32 n, u32 stride) { transpose_square(a, n, stride); }
EXPORT void LowerTriangle_d(const double* src, double* dst, u32 rows, u32 cols, u32 src_stride, u32 dst_stride,
                            i32 diagonal) {
    copy(src, dst, rows, src_stride, dst_stride,
         [=](u32 r) { return std::pair(0U, std::min(r + (diagonal ? 1 : 0), cols)); });
}
EXPORT void UpperTriangle_d(const double* src, double* dst, u32 rows, u32 cols, u32 src_stride, u32 dst_stride,
                            i32 diagonal) {
    copy(src, dst, rows, src_stride, dst_stride, [=](u32 r) { return std::pair(r + (diagonal ? 0 : 1), cols); });
}
EXPORT void ZeroLowerTriangle_d(double* a, u32 rows, u32 cols, u32 stride, std::uint8_t diagonal) {
    for (u32 r = 0; r < rows; ++r)
        for (u32 c = 0; c < std::min(r + (diagonal ? 1 : 0), cols); ++c) a[at(r, c, stride)] = 0.0;
}
EXPORT void ZeroUpperTriangle_d(double* a, u32 rows, u32 cols, u32 stride, std::uint8_t diagonal) {
    for (u32 r = 0; r < rows; ++r)
        for (u32 c = r + (diagonal ? 0 : 1); c < cols; ++c) a[at(r, c, stride)] = 0.0;
}
EXPORT void RowExchange_d(double* a, u32 row1, u32 row2, u32 cols, u32 stride) {
    for (u32 c = 0; c < cols; ++c) std::swap(a[at(row1, c, stride)], a[at(row2, c, stride)]);
}
EXPORT void ColExchange_d(double* a, u32 col1, u32 col2, u32 rows, u32 stride) {
    for (u32 r = 0; r < rows; ++r) std::swap(a[at(r, col1, stride)], a[at(r, col2, stride)]);
}

} // extern "C"
