// Some columns of the factor L or U as level 3 can use them.
#pragma once
#include "lapack/kernel/source/indefinite/pivots.hpp"
#include "lapack/kernel/source/indefinite/symmetry.hpp"
#include "service/matrix.hpp"

namespace nxl {

/// The factor is stored with each column's rows as they were when it was finished; a product of several columns needs
/// the later interchanges of the block in all of them. They concern the block's own rows, of which `corner` is a copy,
/// and as many rows beyond as there are interchanges at most: `moved`. All others are right as they stand.
///
///     +--------+
///     | corner |       unit triangular, count by count; blocks of D are not in it
///     +--------+
///     |  rest  |       of A itself, but for the rows in `moved`
///     +--------+
template <class T> class PivotBlock {
    const PivotOrder order_;
    const Slice steps_, columns_;
    const Matrix<const T> a_;
    T* const room_;
    i64* const moved_rows_;
    i64 moved_ = 0;

    T* row(i64 r) const;
    void interchange(i64 k, i64 p, const Slice& columns) const;
    i64 place_of(i64 r) const;

  public:
    static constexpr i64 width = 64;
    static constexpr i64 most = width + 1; // when the last pivot takes two
    static constexpr i64 room_needed = 2 * most * most;

    /// `room`: room_needed elements, `rows`: most. Both, and what is read of `a`, have to stay.
    PivotBlock(const PivotOrder& order, const Slice& steps, const Matrix<const T>& a, const i64* ipiv, T* room,
               i64* rows);

    Slice columns() const { return columns_; }
    /// The rows beyond the corner.
    Slice rest() const { return order_.rest(steps_.end()); }
    Matrix<T> corner() const { return {room_, steps_.count, steps_.count, most}; }
    Matrix<T> moved() const { return {room_ + most * most, moved_, steps_.count, most}; }
    /// The row of A that a row of `moved` stands for.
    i64 moved_row(i64 i) const { return moved_rows_[i]; }
};

} // namespace nxl
