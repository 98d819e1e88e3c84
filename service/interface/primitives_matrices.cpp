// Entries of the matrix primitives: row-major blocks, arguments by value, sizes unsigned.
#include "nxl.h"
#include "primitives/matrices/columns.hpp"
#include "primitives/matrices/copy.hpp"
#include "primitives/matrices/slots.hpp"
#include "primitives/matrices/triangles.hpp"
#include "service/export.hpp"

using namespace nxl;

namespace {

/// Asks the byte alone. Compilers take it that callers clear the rest of its register, which not all languages do.
bool is_set(unsigned char byte) {
    const volatile unsigned char alone = byte;
    return alone != 0;
}

} // namespace

extern "C" {

NXL_EXPORT void CopySubMatrix_d(const double* src, double* dst, unsigned srcRow, unsigned srcCol, unsigned dstRow,
                                unsigned dstCol, unsigned rows, unsigned cols, unsigned srcStride,
                                unsigned dstStride) noexcept {
    copy_sub_matrix_d(src, dst, {srcRow, srcCol}, {dstRow, dstCol}, rows, cols, srcStride, dstStride);
}
NXL_EXPORT void CopySubMatrixc_d(const zcomplex* src, zcomplex* dst, unsigned srcRow, unsigned srcCol, unsigned dstRow,
                                 unsigned dstCol, unsigned rows, unsigned cols, unsigned srcStride,
                                 unsigned dstStride) noexcept {
    copy_sub_matrix_c(src, dst, {srcRow, srcCol}, {dstRow, dstCol}, rows, cols, srcStride, dstStride);
}

NXL_EXPORT void ResizeMatrix_d(const double* src, double* dst, unsigned rows, unsigned cols, unsigned srcStride,
                               unsigned dstStride) noexcept {
    copy_block_d(src, dst, rows, cols, srcStride, dstStride);
}
NXL_EXPORT void ResizeMatrixc_d(const zcomplex* src, zcomplex* dst, unsigned rows, unsigned cols, unsigned srcStride,
                                unsigned dstStride) noexcept {
    copy_block_c(src, dst, rows, cols, srcStride, dstStride);
}

NXL_EXPORT void TransposeMatrix_d(const double* src, double* dst, unsigned rows, unsigned cols, unsigned srcStride,
                                  unsigned dstStride) noexcept {
    slot<&MatrixTable::transpose_d>(src, dst, rows, cols, srcStride, dstStride);
}
NXL_EXPORT void TransposeMatrixc_d(const zcomplex* src, zcomplex* dst, unsigned rows, unsigned cols, unsigned srcStride,
                                   unsigned dstStride) noexcept {
    slot<&MatrixTable::transpose_c>(src, dst, rows, cols, srcStride, dstStride);
}

NXL_EXPORT void AdjungateMatrixc_d(const zcomplex* src, zcomplex* dst, unsigned rows, unsigned cols, unsigned srcStride,
                                   unsigned dstStride) noexcept {
    slot<&MatrixTable::adjoint_c>(src, dst, rows, cols, srcStride, dstStride);
}

NXL_EXPORT void TransposeSquareMatrix_d(double* a, unsigned n, unsigned stride) noexcept {
    slot<&MatrixTable::transpose_square_d>(a, n, stride);
}
NXL_EXPORT void TransposeSquareMatrixc_d(zcomplex* a, unsigned n, unsigned stride) noexcept {
    slot<&MatrixTable::transpose_square_c>(a, n, stride);
}

NXL_EXPORT void AdjungateSquareMatrixc_d(zcomplex* a, unsigned n, unsigned stride) noexcept {
    slot<&MatrixTable::adjoint_square_c>(a, n, stride);
}

NXL_EXPORT void LowerTriangle_d(const double* src, double* dst, unsigned rows, unsigned cols, unsigned srcStride,
                                unsigned dstStride, int includeDiagonal) noexcept {
    copy_lower_d(src, dst, rows, cols, srcStride, dstStride, includeDiagonal != 0);
}
NXL_EXPORT void LowerTrianglec_d(const zcomplex* src, zcomplex* dst, unsigned rows, unsigned cols, unsigned srcStride,
                                 unsigned dstStride, int includeDiagonal) noexcept {
    copy_lower_c(src, dst, rows, cols, srcStride, dstStride, includeDiagonal != 0);
}

NXL_EXPORT void UpperTriangle_d(const double* src, double* dst, unsigned rows, unsigned cols, unsigned srcStride,
                                unsigned dstStride, int includeDiagonal) noexcept {
    copy_upper_d(src, dst, rows, cols, srcStride, dstStride, includeDiagonal != 0);
}
NXL_EXPORT void UpperTrianglec_d(const zcomplex* src, zcomplex* dst, unsigned rows, unsigned cols, unsigned srcStride,
                                 unsigned dstStride, int includeDiagonal) noexcept {
    copy_upper_c(src, dst, rows, cols, srcStride, dstStride, includeDiagonal != 0);
}

NXL_EXPORT void ZeroLowerTriangle_d(double* a, unsigned rows, unsigned cols, unsigned stride,
                                    unsigned char zeroDiagonal) noexcept {
    zero_lower_d(a, rows, cols, stride, is_set(zeroDiagonal));
}
NXL_EXPORT void ZeroLowerTrianglec_d(zcomplex* a, unsigned rows, unsigned cols, unsigned stride,
                                     unsigned char zeroDiagonal) noexcept {
    zero_lower_c(a, rows, cols, stride, is_set(zeroDiagonal));
}

NXL_EXPORT void ZeroUpperTriangle_d(double* a, unsigned rows, unsigned cols, unsigned stride,
                                    unsigned char zeroDiagonal) noexcept {
    zero_upper_d(a, rows, cols, stride, is_set(zeroDiagonal));
}
NXL_EXPORT void ZeroUpperTrianglec_d(zcomplex* a, unsigned rows, unsigned cols, unsigned stride,
                                     unsigned char zeroDiagonal) noexcept {
    zero_upper_c(a, rows, cols, stride, is_set(zeroDiagonal));
}

NXL_EXPORT void RowExchange_d(double* a, unsigned row1, unsigned row2, unsigned cols, unsigned stride) noexcept {
    slot<&MatrixTable::row_exchange_d>(a, row1, row2, cols, stride);
}
NXL_EXPORT void RowExchangec_d(zcomplex* a, unsigned row1, unsigned row2, unsigned cols, unsigned stride) noexcept {
    slot<&MatrixTable::row_exchange_c>(a, row1, row2, cols, stride);
}

NXL_EXPORT void ColExchange_d(double* a, unsigned col1, unsigned col2, unsigned rows, unsigned stride) noexcept {
    column_exchange_d(a, col1, col2, rows, stride);
}
NXL_EXPORT void ColExchangec_d(zcomplex* a, unsigned col1, unsigned col2, unsigned rows, unsigned stride) noexcept {
    column_exchange_c(a, col1, col2, rows, stride);
}

} // extern "C"
