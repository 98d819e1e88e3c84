// The factors of a band matrix, P1 L1 P2 L2 ... U, and what is done with them. L keeps the order that its rows had when
// each of its columns was made: later interchanges are not applied to it, so that it fits into the band.
//
//     stored columns of ab, kl = 1, ku = 1      * * 0 0 0      kl diagonals for what interchanges fill in
//                                               * u u u u      ku: the highest of A
//                                               u u u u u
//                                               l l l l *      kl multipliers
#pragma once
#include "lapack/kernel/source/common/columns.hpp"
#include "service/slice.hpp"

namespace nxl {

template <class T> struct BandLu {
    Columns<const T> upper, lower; // lower: the multipliers, without the diagonal of ones
    const i64* ipiv;               // counted from 1

    static BandLu of(const T* ab, i64 ldab, i64 n, i64 kl, i64 ku, const i64* pivots) {
        const Columns<const T> all = band_of(ab, ldab, n, n, kl, kl + ku);
        return {{all.a, all.above, 0}, {all.a, -1, kl}, pivots};
    }

    i64 order() const { return upper.a.rows; }

    /// B := L^-1 P B or, for T and C, P^T op(L)^-1 B, L being that of all steps with their interchanges.
    void solve_lower(char trans, const Matrix<T>& b) const;
    void solve(char trans, const Matrix<T>& b) const;
    void solve(char trans, T* x) const { solve(trans, {x, order(), 1, order()}); }

  private:
    void lower_columns(char trans, T* x) const;
    void lower_strip(char trans, const Slice& strip_columns, T* x) const;
    void lower_blocks(char trans, const Matrix<T>& b, T* space) const;
    void lower_block(char trans, i64 j, i64 width, const Matrix<T>& b, T* space) const;
};

} // namespace nxl
