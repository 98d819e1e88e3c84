// Drivers with a triangular operand, and their decisions. Only the other matrix is cut: into columns when the triangle
// stands on the left, into rows when it stands on the right, so that every thread runs the serial kernel.
#pragma once
#include "service/kernel_table.hpp"
#include "service/slice.hpp"

namespace nxl {

/// B := alpha op(A) B or alpha op(A)^-1 B, or the same from the right; A is a triangle.
template <class T, auto Kernel>
void triangular_driver(const char& side, const char& uplo, const char& transa, const char& diag, const i64& m,
                       const i64& n, const T& alpha, const T* a, const i64& lda, T* b, const i64& ldb);
inline constexpr auto nxl_blas_dtrmm = triangular_driver<double, &KernelTable::dtrmm>;
inline constexpr auto nxl_blas_ztrmm = triangular_driver<zcomplex, &KernelTable::ztrmm>;
inline constexpr auto nxl_blas_dtrsm = triangular_driver<double, &KernelTable::dtrsm>;
inline constexpr auto nxl_blas_ztrsm = triangular_driver<zcomplex, &KernelTable::ztrsm>;

/// One solution or product: B is m by n, the triangle of order m (left) or n (right).
struct TriangularShape {
    bool left;
    i64 m, n;

    i64 order() const { return left ? m : n; }
    /// The side of B that is cut.
    i64 free_length() const { return left ? n : m; }
};

/// What a routine asks of a call on one side before it forks.
struct TriangularGate {
    bool weighs_work;  ///< estimates of work count; otherwise the sizes alone
    i64 rounds_above;  ///< triangles of an order above this round the block length down to a multiple of 4
    i64 least_q;       ///< block length below which a call stays serial ...
    i64 least_q_above; ///< ... if its triangle is of an order above this
};
const TriangularGate& dtrsm_gate(CpuClass cpu_class, bool left);
/// Of ztrsm, dtrmm and ztrmm, in every class.
const TriangularGate& triangular_gate(bool left);

/// Columns (left) or rows (right) of each block but the last, on `threads` threads; may be 0.
i64 triangular_block(const TriangularGate& gate, const TriangularShape& shape, i64 threads);

/// Whether the call is too small to fork, given its block length q. `work_factor` is the work of one multiply-add,
/// counted in real ones: 1, or 4 for complex.
bool triangular_stays_serial(const TriangularGate& gate, const TriangularShape& shape, i64 q, double work_factor);

} // namespace nxl
