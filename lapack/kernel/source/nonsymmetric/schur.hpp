// The iteration from Hessenberg to Schur form: what its ways share.
#pragma once
#include "lapack/kernel/source/common/scalars.hpp"
#include "lapack/kernel/source/nonsymmetric/standard_block.hpp"
#include "service/matrix.hpp"
#include <algorithm>

namespace nxl {

/// Z H Z^H stays as it is. Rows and columns are counted from 0, those that a call works on are first .. end - 1; H is
/// triangular outside of them, but for blocks of order 2 of a real matrix.
template <class T> struct SchurIteration {
    const Matrix<T> h;
    const Matrix<T> z;     // without rows where it is not wanted
    const bool whole_form; // else the eigenvalues alone: what is outside of an active block is left as it is
    zcomplex* const w;     // eigenvalues, of those that have converged

    /// Columns and rows of H that a change of rows and columns first .. end - 1 concerns.
    i64 end_of_columns(i64 end) const { return whole_form ? h.columns : end; }
    i64 start_of_rows(i64 first) const { return whole_form ? 0 : first; }

    /// Whether h(k, k-1) may be set to zero in the active block first .. end - 1: small beside its neighbours on the
    /// diagonal, and so the change of the eigenvalues. Ahues and Tisseur, LAPACK Working Note 122 (1997).
    bool is_negligible(i64 k, i64 first, i64 end) const;
    /// The start of the last block of rows first .. end - 1 that does not split; the element before it becomes 0.
    i64 start_of_block(i64 first, i64 end) const;
    /// Rows first and first + 1 have split off: makes them standard and notes their eigenvalues.
    void finish_two(i64 first) const;
};

/// Each answers 0, or the end of the rows that have not converged; those from there on have.
template <class T> i64 iterate_double_shift(const SchurIteration<T>& s, i64 first, i64 end);
template <class T> i64 iterate_multishift(const SchurIteration<T>& s, i64 first, i64 end);
/// By whichever of them suits.
template <class T> i64 iterate_to_schur(const SchurIteration<T>& s, i64 first, i64 end);

/// The first column of (H - s1) (H - s2) for the three rows at the start of a Hessenberg matrix (two where `rows` is
/// 2), to a factor.
template <class T> void start_bulge(const Operand<T>& h, i64 rows, const Eigenpair& shifts, T* v);

/// The number of T: of a real matrix, what is said of its shifts is real.
template <class T> T scalar_of(const zcomplex& x) {
    if constexpr (is_complex_scalar<T>) return x;
    else return x.real();
}

} // namespace nxl
